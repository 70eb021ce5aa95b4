// Runs a fuzz target without libFuzzer: all seeds of a folder, then mutations of them. Each round depends on
// its number and the start value alone, so that "--first N --runs 1" repeats one. Inputs end where their
// memory ends.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#include <sanitizer/common_interface_defs.h>
#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t uBytes);

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Options {
    std::string szSeeds = ORVIN_FUZZ_SEEDS;
    std::uint64_t u64First = 0, u64Runs = ORVIN_FUZZ_RUNS, u64Start = 1;
    std::size_t uMaxBytes = 4096;
};

std::uint64_t g_u64Round = 0;
[[maybe_unused]] void TellRound() {
    std::fprintf(stderr, "fuzz: repeat with --first %llu --runs 1\n",
                 static_cast<unsigned long long>(g_u64Round));
}

void RunOne(const Bytes& vec) {
    const std::unique_ptr<std::uint8_t[]> pExact(new std::uint8_t[vec.size()]);
    std::copy(vec.begin(), vec.end(), pExact.get());
    LLVMFuzzerTestOneInput(pExact.get(), vec.size());
}

std::vector<Bytes> ReadSeeds(const std::string& szFolder) {
    std::vector<std::filesystem::path> vecPaths;
    for (const auto& entry : std::filesystem::directory_iterator(szFolder))
        if (entry.is_regular_file()) vecPaths.push_back(entry.path());
    std::sort(vecPaths.begin(), vecPaths.end());
    std::vector<Bytes> vecSeeds;
    for (const auto& path : vecPaths) {
        std::ifstream file(path, std::ios::binary);
        vecSeeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return vecSeeds;
}

/// One input: a seed with a few changes of the kinds that upset readers.
class Mutation {
  public:
    Mutation(const std::vector<Bytes>& vecSeeds, std::uint64_t u64Seed, std::size_t uMaxBytes)
        : m_vecSeeds(vecSeeds), m_rng(u64Seed), m_uMaxBytes(uMaxBytes), m_vec(AnySeed()) {}

    Bytes Make() {
        for (std::size_t u = 1 + Below(8); u; --u) Change();
        if (m_vec.size() > m_uMaxBytes) m_vec.resize(m_uMaxBytes);
        return m_vec;
    }

  private:
    std::size_t Below(std::size_t uLimit) { return uLimit ? m_rng() % uLimit : 0; }
    const Bytes& AnySeed() { return m_vecSeeds[Below(m_vecSeeds.size())]; }
    std::ptrdiff_t Place() { return static_cast<std::ptrdiff_t>(Below(m_vec.size() + 1)); }

    void Change() {
        switch (Below(7)) {
        case 0:
            return FlipBit();
        case 1:
            return SetByte();
        case 2:
            return SetWord();
        case 3:
            return Insert();
        case 4:
            return Erase();
        case 5:
            return Splice();
        default:
            return Repeat();
        }
    }
    void FlipBit() {
        if (!m_vec.empty()) m_vec[Below(m_vec.size())] ^= static_cast<std::uint8_t>(1u << Below(8));
    }
    void SetByte() {
        static constexpr std::uint8_t auValues[] = {0, 1, 2, 4, 5, 0x7F, 0x80, 0xFE, 0xFF};
        if (!m_vec.empty()) m_vec[Below(m_vec.size())] = auValues[Below(std::size(auValues))];
    }
    void SetWord() {
        if (m_vec.size() < 4) return;
        const auto uSize = static_cast<std::uint32_t>(m_vec.size());
        const std::uint32_t auValues[] = {0,
                                          3,
                                          4,
                                          5,
                                          uSize,
                                          uSize - 1,
                                          uSize - 4,
                                          0x40000,
                                          0x7FFFFFFF,
                                          0xFFFFFFFF,
                                          static_cast<std::uint32_t>(Below(uSize))};
        const std::uint32_t uValue = auValues[Below(std::size(auValues))];
        std::memcpy(m_vec.data() + Below(m_vec.size() - 3), &uValue, 4);
    }
    void Insert() {
        Bytes vecNew(1 + Below(12));
        for (auto& u : vecNew) u = static_cast<std::uint8_t>(m_rng());
        m_vec.insert(m_vec.begin() + Place(), vecNew.begin(), vecNew.end());
    }
    void Erase() {
        const std::ptrdiff_t iFrom = Place();
        const auto iCount = static_cast<std::ptrdiff_t>(
            Below(std::min<std::size_t>(16, m_vec.size() - static_cast<std::size_t>(iFrom)) + 1));
        m_vec.erase(m_vec.begin() + iFrom, m_vec.begin() + iFrom + iCount);
    }
    void Splice() {
        const Bytes vecOther = AnySeed();
        m_vec.resize(static_cast<std::size_t>(Place()));
        m_vec.insert(m_vec.end(), vecOther.begin() + static_cast<std::ptrdiff_t>(Below(vecOther.size() + 1)),
                     vecOther.end());
    }
    void Repeat() {
        const Bytes vecCopy(m_vec.begin() + Place(), m_vec.end());
        m_vec.insert(m_vec.begin() + Place(), vecCopy.begin(), vecCopy.end());
    }

    const std::vector<Bytes>& m_vecSeeds;
    std::mt19937_64 m_rng;
    std::size_t m_uMaxBytes;
    Bytes m_vec;
};

Options Parse(int iCount, char** aszArguments) {
    Options st;
    for (int i = 1; i < iCount; ++i) {
        const std::string szName = aszArguments[i];
        const bool bValue = i + 1 < iCount && szName.rfind("--", 0) == 0;
        const std::uint64_t u64Value = bValue ? std::strtoull(aszArguments[i + 1], nullptr, 10) : 0;
        if (szName == "--runs")
            st.u64Runs = u64Value;
        else if (szName == "--first")
            st.u64First = u64Value;
        else if (szName == "--start")
            st.u64Start = u64Value;
        else if (szName == "--max-bytes")
            st.uMaxBytes = u64Value;
        else
            st.szSeeds = szName;
        i += bValue;
    }
    return st;
}

} // namespace

int main(int iCount, char** aszArguments) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    __sanitizer_set_death_callback(TellRound);
#endif
    const Options st = Parse(iCount, aszArguments);
    const std::vector<Bytes> vecSeeds = ReadSeeds(st.szSeeds);
    if (vecSeeds.empty()) {
        std::fprintf(stderr, "fuzz: no seeds in %s\n", st.szSeeds.c_str());
        return 1;
    }
    for (const Bytes& vecSeed : vecSeeds) RunOne(vecSeed);
    for (g_u64Round = st.u64First; g_u64Round < st.u64First + st.u64Runs; ++g_u64Round)
        RunOne(Mutation(vecSeeds, st.u64Start * 0x9E3779B97F4A7C15u + g_u64Round, st.uMaxBytes).Make());
    std::printf("fuzz: %zu seeds and %llu mutations, no fault\n", vecSeeds.size(),
                static_cast<unsigned long long>(st.u64Runs));
    return 0;
}
