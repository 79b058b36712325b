// Writes the first corpus of the fuzz targets: one small file for each thing that the readers tell apart.
// Usage: make_corpus FOLDER

#include "project/project_stream.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <iostream>

using namespace velmora::test;

int main(int nArguments, char** pArguments)
{
    if (nArguments != 2) {
        std::cerr << "Usage: make_corpus FOLDER\n";
        return 2;
    }
    const std::vector<double> samples = {0.5, -0.5, 0.25, -0.25};
    const std::string sFormat = formatChunk({});
    const std::string sData = riffChunk("data", sampleBytes({}, samples));
    const std::string sOdd = riffChunk("LIST", "odd");
    std::string sNoBlockAlign = waveBytes({}, samples);
    sNoBlockAlign.replace(32, 2, std::string(2, '\0'));
    const struct
    {
        const char* m_sName;
        std::string m_sBytes;
    } files[] = {
        {"pcm8.wav", waveBytes({1, 1, 8000, 8}, samples)},
        {"pcm16.wav", waveBytes({}, samples)},
        {"pcm24.wav", waveBytes({1, 2, 48000, 24}, samples)},
        {"pcm32.wav", waveBytes({1, 1, 96000, 32}, samples)},
        {"float.wav", waveBytes({3, 1, 44100, 32}, samples)},
        {"double.wav", waveBytes({3, 2, 44100, 64}, samples)},
        {"long-format.wav", riffWave(formatChunk({}, std::string(2, '\0')) + sData)},
        {"loop.wav", riffWave(sFormat + sData + samplerChunk(1, 1, 2))},
        {"no-loop.wav", riffWave(sFormat + sData + samplerChunk(0))},
        {"odd-chunks.wav", riffWave(sOdd + sFormat + sOdd + sData + sOdd + samplerChunk(2, 3, 4))},
        {"endless-data.wav", riffWave(sFormat + "data" + littleEndianBytes(0xFFFFFFFF, 4))},
        {"no-block-align.wav", sNoBlockAlign},
        {"no-channels.wav", waveBytes({1, 0, 44100, 16}, samples)},
        {"empty.wav", ""},
    };
    const std::filesystem::path folder = pArguments[1];
    std::filesystem::create_directories(folder / "wave");
    for (const auto& file : files)
        writeFile(folder / "wave" / file.m_sName, file.m_sBytes);

    const std::string sStart = "4098\nprojects\naudio\n\n4001\nfalse\nTRUE\n yes \ngone.wav\n 128 \n";
    std::string sWhole = sStart;
    for (int nLine = 11; nLine <= 71; ++nLine)
        sWhole += std::to_string(nLine * 70001 % 65536) + (nLine % 7 == 0 ? ".5\r\n" : "\n");
    std::filesystem::create_directories(folder / "settings");
    writeFile(folder / "settings" / "empty.log", "");
    writeFile(folder / "settings" / "start.log", sStart);
    writeFile(folder / "settings" / "returns.log", "4098\nprojects\r\r\r\naudio\r\n\r\r\n");
    writeFile(folder / "settings" / "whole.log", sWhole);
    writeFile(folder / "settings" / "longer.log", sWhole + "one more\n");
    writeFile(folder / "settings" / "numbers.log", "-1\n\n\n\n99999999999\n\n\n\n\n0x10\ntrue\n+7\n1e9\n");
    writeFile(folder / "settings" / "bytes.log", std::string("4098\n\0\xFF\xFE\n\t\n", 11));

    std::filesystem::create_directories(folder / "project");
    for (int nVersion = 1; nVersion <= 31; ++nVersion)
        writeFile(folder / "project" / ("version-" + std::to_string(nVersion) + ".prj"),
                  numberedStream(nVersion, nVersion % 3));
    std::string sLegacyGUI = numberedStream(15, 1);
    sLegacyGUI.replace(sLegacyGUI.rfind("\xFF\xFF\xFF\xFF"), 4, littleEndianBytes(68, 4));
    writeFile(folder / "project" / "legacy-gui.prj", sLegacyGUI);
    writeFile(folder / "project" / "wide-text.prj",
              std::string("\1\0\0\0\0\0\0\0\xFF\xFE\xFF\2A\0\x3D\xD8\0\0\0\0", 19));
    return 0;
}
