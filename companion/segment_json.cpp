#include "companion/segment_json.h"
#include "companion/utf.h"
#include <cmath>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>

namespace companion {
namespace {

using Json = nlohmann::ordered_json;

Json Number(f32 fValue) { return std::isfinite(fValue) ? Json(fValue) : Json(nullptr); }

Json PositionToJson(u8 bChanged, u32 uAlign, u32 uX, u32 uY) {
    return {{"bChanged", bChanged}, {"uAlign", uAlign}, {"uX", uX}, {"uY", uY}};
}

Json CommandToJson(const stSharedCommand& st) {
    Json js;
    js["uTargetPid"] = st.uTargetPid;
    js["uTargetTid"] = st.uTargetTid;
    js["wzTargetProfile"] = Utf8FromUnits(st.wzTargetProfile, std::size(st.wzTargetProfile));
    js["bRelease"] = st.bRelease;
    js["uStatus"] = st.uStatus;
    js["bStatusChanged"] = st.bStatusChanged;
    js["Pos0"] = PositionToJson(st.bPos0Changed, st.uPos0Align, st.uPos0X, st.uPos0Y);
    js["Pos1"] = PositionToJson(st.bPos1Changed, st.uPos1Align, st.uPos1X, st.uPos1Y);
    js["Pos2"] = PositionToJson(st.bPos2Changed, st.uPos2Align, st.uPos2X, st.uPos2Y);
    js["u8Screenshot"] = st.u8Screenshot;
    js["bReloadCamera"] = st.bReloadCamera;
    js["u8Timer"] = st.u8Timer;
    js["uFPS"] = st.uFPS;
    js["fFrameTime"] = Number(st.fFrameTime);
    js["uApiCode"] = st.uApiCode;
    js["bRebuildUpdate"] = st.bRebuildUpdate;
    return js;
}

Json RecordsToJson(const stProcessRecord (&aRecords)[g_uProcessRecordCount], bool bAll) {
    Json jsRecords = Json::array();
    for (u32 i = 0; i < g_uProcessRecordCount; ++i) {
        const stProcessRecord& st = aRecords[i];
        if (!bAll && st.uThreadId == 0) continue;
        jsRecords.push_back({{"slot", i},
                             {"uThreadId", st.uThreadId},
                             {"uProcessId", st.uProcessId},
                             {"bChanged", st.bChanged},
                             {"Command", CommandToJson(st.Command)}});
    }
    return jsRecords;
}

Json ProfilesToJson(const stSharedSegment& stSegment, bool bAll) {
    Json jsProfiles = Json::array();
    for (u32 i = 0; i < g_uProcessProfileCount; ++i) {
        const stProcessProfile& st = stSegment.ProcessProfile[i];
        if (!bAll && st.uProcessId == 0 && st.uThreadId == 0) continue;
        jsProfiles.push_back({{"slot", i},
                              {"uProcessId", st.uProcessId},
                              {"uThreadId", st.uThreadId},
                              {"wzProfileName", Utf8FromUnits(st.wzProfileName, std::size(st.wzProfileName))},
                              {"bUseGlobal", st.bUseGlobal}});
    }
    return jsProfiles;
}

/// CRC-32 as in zip files, so that two dumps can be compared without their bytes.
u32 Checksum(const u8* pBytes, size_t uCount) {
    u32 uCrc = 0xFFFFFFFFu;
    for (size_t i = 0; i < uCount; ++i) {
        uCrc ^= pBytes[i];
        for (int iBit = 0; iBit < 8; ++iBit) uCrc = (uCrc >> 1) ^ (0xEDB88320u & (0u - (uCrc & 1u)));
    }
    return ~uCrc;
}

std::string Hexadecimal(const u8* pBytes, size_t uCount) {
    constexpr char szDigits[] = "0123456789abcdef";
    std::string strOut;
    strOut.reserve(uCount * 2);
    for (size_t i = 0; i < uCount; ++i) {
        strOut += szDigits[pBytes[i] >> 4];
        strOut += szDigits[pBytes[i] & 15];
    }
    return strOut;
}

Json AreaToJson(const u8* pBytes, size_t uCount, bool bRawBytes) {
    size_t uUsed = uCount;
    while (uUsed != 0 && pBytes[uUsed - 1] == 0) --uUsed;
    char szChecksum[16];
    std::snprintf(szChecksum, sizeof(szChecksum), "%08x", static_cast<unsigned>(Checksum(pBytes, uCount)));
    Json js{{"bytes", uCount}, {"used", uUsed}, {"crc32", szChecksum}};
    if (bRawBytes) js["hex"] = Hexadecimal(pBytes, uUsed);
    return js;
}

Json FilterToJson(const stMonitorFilter& st) {
    return {{"uProcessId", st.uProcessId},
            {"uThreadId", st.uThreadId},
            {"wzProfileName", Utf8FromUnits(st.wzProfileName, std::size(st.wzProfileName))}};
}

void AddAreas(Json& js, const stSharedSegment& st, bool bRawBytes) {
    js["RawData"] = {AreaToJson(st.RawData[0], sizeof(st.RawData[0]), bRawBytes),
                     AreaToJson(st.RawData[1], sizeof(st.RawData[1]), bRawBytes)};
    js["DataTable"] = {AreaToJson(st.DataTable[0], sizeof(st.DataTable[0]), bRawBytes),
                       AreaToJson(st.DataTable[1], sizeof(st.DataTable[1]), bRawBytes)};
    js["MonitorVGA"] = AreaToJson(st.MonitorVGA, sizeof(st.MonitorVGA), bRawBytes);
}

void AddHead(Json& js, const stSharedSegment& st) {
    js["bEnableQueryFrameTime"] = st.bEnableQueryFrameTime;
    js["bGlobalEnable"] = st.bGlobalEnable;
    js["bSegmentReady"] = st.bSegmentReady;
    js["bReserved"] = st.bReserved;
    js["uMsgUnhookThread"] = st.uMsgUnhookThread;
    js["uMsgFromGWexe"] = st.uMsgFromGWexe;
    js["u8MonitorTimer"] = st.u8MonitorTimer;
    js["u8MonitorScreenshot"] = st.u8MonitorScreenshot;
}

std::string ScalarText(const Json& js) {
    return js.is_string() ? Printable(js.get_ref<const std::string&>()) : js.dump();
}

void AppendTree(std::string& strOut, const Json& js, const std::string& strIndent);

void AppendEntry(std::string& strOut, const std::string& strLabel, const Json& js,
                 const std::string& strIndent) {
    if (js.is_structured() && !js.empty()) {
        strOut += strIndent + strLabel + "\n";
        AppendTree(strOut, js, strIndent + "  ");
    } else {
        strOut += strIndent + strLabel + " " + (js.is_structured() ? "none" : ScalarText(js)) + "\n";
    }
}

bool IsFlat(const Json& js) {
    for (const auto& jsItem : js) {
        if (jsItem.is_structured()) return false;
    }
    return true;
}

void AppendTree(std::string& strOut, const Json& js, const std::string& strIndent) {
    if (js.is_array() && IsFlat(js)) {
        std::string strLine;
        for (const auto& jsItem : js) strLine += (strLine.empty() ? "" : " ") + ScalarText(jsItem);
        strOut += strIndent + strLine + "\n";
        return;
    }
    size_t uIndex = 0;
    for (const auto& item : js.items()) {
        const std::string strLabel =
            js.is_array() ? "[" + std::to_string(uIndex++) + "]" : Printable(item.key()) + ":";
        AppendEntry(strOut, strLabel, item.value(), strIndent);
    }
}

} // namespace

Json SegmentToJson(const stSharedSegment& stSegment, const DumpOptions& stOptions) {
    Json js;
    AddHead(js, stSegment);
    js["CommandTable"] = RecordsToJson(stSegment.CommandTable, stOptions.bAllSlots);
    js["DefaultCommand"] = CommandToJson(stSegment.DefaultCommand);
    js["uDataBank"] = stSegment.uDataBank;
    js["StatusTable"] = RecordsToJson(stSegment.StatusTable, stOptions.bAllSlots);
    js["MonitorPos"] = stSegment.MonitorPos;
    js["MonitorFilter"] = FilterToJson(stSegment.MonitorFilter);
    js["wzGlobalProfile"] = Utf8FromUnits(stSegment.wzGlobalProfile, std::size(stSegment.wzGlobalProfile));
    AddAreas(js, stSegment, stOptions.bRawBytes);
    js["ProcessProfile"] = ProfilesToJson(stSegment, stOptions.bAllSlots);
    return js;
}

std::string TreeToText(const Json& jsTree) {
    std::string strOut;
    AppendTree(strOut, jsTree, "");
    return strOut;
}

std::string JsonToText(const Json& jsTree) {
    return PrintableJson(jsTree.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace companion
