#pragma once
// A program's frames among the sensors that are published.
#include "companion/control_library.h"
#include "companion/recording/live_figures.h"
#include "companion/sensors/source.h"
#include <memory>
#include <string>

namespace companion::recording {

/// Lows and stutters of one program, which may start later, end, and start again. Has to be read more often
/// than g_uTraceSilence.
class FrameSource : public sensors::Source {
  public:
    FrameSource(const ControlLibrary& stLibrary, std::string strProgram)
        : m_stLibrary(stLibrary), m_strProgram(std::move(strProgram)) {}

    void Probe(sensors::Numbers&) override;
    void List(const sensors::Numbers&) override;
    void Read() override;

  private:
    const ControlLibrary& m_stLibrary;
    const std::string m_strProgram;
    u32 m_uProcessId = 0;
    std::unique_ptr<TraceReader> m_pReader;
    LiveFigures m_live;
};

} // namespace companion::recording
