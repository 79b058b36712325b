#pragma once

#include <QIcon>

namespace velmora {

enum class EIcon
{
    Play,
    Pause,
    Stop,
    Loop,
    Bypass,
    OpenFile,
    Microphone,
    Wave,
    Oscillator,
    Synth,
    Rebuild,
    Load,
    Unload,
    Undo,
    Redo,
    Settings,
    Information,
    Question,
    Count
};

// The program's icons, drawn in the colours of the theme that holds when they are painted, crisp at every
// scale. What is switched on is drawn in the accent colour, what is disabled quietly. [main]
[[nodiscard]] QIcon themeIcon(EIcon eIcon);

} // namespace velmora
