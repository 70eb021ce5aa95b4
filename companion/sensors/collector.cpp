#include "companion/sensors/collector.h"
#include <algorithm>

namespace companion::sensors {

void Collector::Probe() {
    for (const auto& pSource : m_listSources) pSource->Probe(m_numbers);
    m_numbers.Settle();
    for (const auto& pSource : m_listSources) pSource->List(m_numbers);
    Gather();
}

void Collector::Read() {
    for (const auto& pSource : m_listSources) pSource->Read();
    Gather();
}

std::vector<Hardware> Collector::Machine() const {
    std::vector<Hardware> listHardware;
    for (const auto& pSource : m_listSources)
        listHardware.insert(listHardware.end(), pSource->Machine().begin(), pSource->Machine().end());
    return listHardware;
}

void Collector::Gather() {
    m_listReadings.clear();
    for (const auto& pSource : m_listSources) {
        for (const Reading& st : pSource->Readings()) {
            const auto it =
                std::find_if(m_listReadings.begin(), m_listReadings.end(),
                             [&](const Reading& stOther) { return stOther.strName == st.strName; });
            if (it == m_listReadings.end()) {
                m_listReadings.push_back(st);
            } else if (!it->iValue && st.iValue) {
                *it = st;
            }
        }
    }
}

} // namespace companion::sensors
