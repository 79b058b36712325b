#pragma once

#include "cli/command.h"

#include <string>

namespace velmora {
class COscillator;
}

namespace velmora::cli {

class CCommandLine;

// The options of every command that lets the test oscillator sound: --kind, --sweep, --frequency, --seed and
// so on, without --rate.
[[nodiscard]] std::vector<COption> oscillatorOptions();

// Why no oscillator can sound like this at a rate of nSampleRate Hz, as full sentences; empty if it can.
[[nodiscard]] std::string oscillatorFault(const CCommandLine& line, int nSampleRate);

// Gives the oscillator its settings, each as given or its default. The seed takes hold when it is next made
// ready for play; a single impulse is fired.
void applyOscillatorOptions(const CCommandLine& line, COscillator& oscillator);

} // namespace velmora::cli
