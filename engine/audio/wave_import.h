#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <span>
#include <vector>

namespace velmora {

// The first loop of a "smpl" chunk, in frames as the file gives them; they may lie beyond its end.
struct CSampleLoop
{
    std::uint32_t m_uStart = 0;
    std::uint32_t m_uEnd = 0;
};

// Sample-exact import of a WAV file into an oscillator table or an impulse: a reader of RIFF chunks of
// its own that understands "smpl". All operations: [main].
//
// Samples become floats from -1.0 to +1.0, by format tag and bits:
//   integer (tag 1): 16 bits, value / 32768;  24 and 32 bits, value in the top of 32 bits / 2147483648
//   float (tag 3):   32 bits unchanged;       64 bits narrowed
// Everything else is refused. Frames = data size / bytes of a value / channels, the rest is dropped.
//
// Chunks in any number may stand before the format, between format and data, and behind; they are
// skipped by their size and the byte that pads an odd size to an even one (a writer who left that zero
// byte out is understood too). A "smpl" chunk counts when it stands behind the data.
// A file whose format, data or "smpl" chunk promises more than the file or the chunk holds is refused;
// an incomplete chunk of another kind behind the data just ends the reading.
class CWaveImporter
{
  public:
    // Reads the file. False, in silence, when it cannot be opened or is not as described above; what was
    // read before then stays, else it is freed and replaced.
    [[nodiscard]] bool read(const std::filesystem::path& path);

    // The same from an open stream, whose current place is taken for the start of the file.
    [[nodiscard]] bool read(std::istream& file);

    // All channels interleaved: frames() * channels() values.
    [[nodiscard]] std::span<const float> samples() const { return m_samples; }
    [[nodiscard]] std::size_t frames() const { return m_uChannels ? m_samples.size() / m_uChannels : 0; }
    [[nodiscard]] unsigned channels() const { return m_uChannels; }     // 1 or more; 0 before a read
    [[nodiscard]] unsigned sampleRate() const { return m_uSampleRate; } // Hz, as the file says
    [[nodiscard]] unsigned bitsPerSample() const { return m_uBits; }    // 16, 24, 32 or 64
    [[nodiscard]] const CSampleLoop& loop() const { return m_loop; }    // zeros if there is none

  private:
    std::vector<float> m_samples;
    unsigned m_uChannels = 0;
    unsigned m_uSampleRate = 0;
    unsigned m_uBits = 0;
    CSampleLoop m_loop;
};

} // namespace velmora
