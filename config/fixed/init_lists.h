#pragma once
// What a layout is going to be made of: records gathered while it is read, made into controls afterwards.
#include "config/fixed/template_init.h"
#include "config/make/graph_records.h"
#include "config/make/number_records.h"
#include "config/make/panel_records.h"
#include "config/make/text_records.h"

#include <vector>

/// Longest list of records; far above what the manager's arrays hold.
constexpr std::size_t g_uInitListMost = 65536;

/// One list a kind. They live during the assembly only.
struct stInitLists {
    std::vector<stTextInit> lstTextInit;
    std::vector<stNumInit> lstNumInit;
    std::vector<stFlipInit> lstFlipInit;
    std::vector<stPanelInit> lstPanelInit;
    std::vector<stLineGraphInit> lstLineGraphInit;
    std::vector<stPieChartInit> lstPieChartInit;
};

/// Says in the log that a list is at its end.
void g_fnReportLongList();
/// Appends a record. False, with the words "list too long" in the log, if the list is full: the step that
/// filled it has failed.
template <class T> bool g_fnAppendInit(std::vector<T>& lst, const T& stRecord, std::size_t uMost) {
    if (lst.size() >= uMost) {
        g_fnReportLongList();
        return false;
    }
    lst.push_back(stRecord);
    return true;
}
template <class T> bool g_fnAppendInit(std::vector<T>& lst, const T& stRecord) {
    return g_fnAppendInit(lst, stRecord, g_uInitListMost);
}
