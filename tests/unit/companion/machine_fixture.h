#pragma once
// A machine made of text files in a temporary folder, and short ways to ask what is read from it.
#include "companion/sensors/collector.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

using namespace companion::sensors;

class MachineTest : public ::testing::Test {
  protected:
    using Values = std::map<std::string, std::optional<i32>>;

    void SetUp() override {
        const auto* pTest = ::testing::UnitTest::GetInstance()->current_test_info();
        m_pathRoot =
            std::filesystem::temp_directory_path() /
            ("orvin-machine-" + std::string(pTest->name()) + "-" +
             std::to_string(std::filesystem::file_time_type::clock::now().time_since_epoch().count()));
        std::filesystem::create_directories(m_pathRoot);
    }
    void TearDown() override {
        std::error_code error;
        std::filesystem::remove_all(m_pathRoot, error);
    }

    std::string Root() const { return m_pathRoot.generic_string(); }

    void Write(const std::string& strPath, const std::string& strText) const {
        const auto path = m_pathRoot / strPath;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << strText;
    }
    /// Several files of one folder.
    void WriteAll(const std::string& strFolder, const std::map<std::string, std::string>& mapFiles) const {
        for (const auto& [strFile, strText] : mapFiles) Write(strFolder + "/" + strFile, strText + "\n");
    }
    /// In place of a file something that exists and cannot be read as one.
    void MakeUnreadable(const std::string& strPath) const {
        std::filesystem::remove_all(m_pathRoot / strPath);
        std::filesystem::create_directories(m_pathRoot / strPath);
    }
    void Remove(const std::string& strPath) const { std::filesystem::remove_all(m_pathRoot / strPath); }

    template <class... S> Collector Collect(std::unique_ptr<S>... pSource) const {
        Sources listSources;
        (listSources.push_back(std::move(pSource)), ...);
        return Collector(std::move(listSources));
    }

    static Values ValuesOf(const Collector& collector) {
        Values mapValues;
        for (const Reading& st : collector.Readings()) mapValues[st.strName] = st.iValue;
        return mapValues;
    }
    static Values Look(Collector& collector) {
        collector.Probe();
        collector.Read();
        return ValuesOf(collector);
    }
    static Values Again(Collector& collector) {
        collector.Read();
        return ValuesOf(collector);
    }

    std::filesystem::path m_pathRoot;
};

inline constexpr std::nullopt_t kNone = std::nullopt;
