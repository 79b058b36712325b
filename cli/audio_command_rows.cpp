#include "cli/audio_command_rows.h"

#include "cli/command_measure.h"
#include "cli/command_osc.h"
#include "cli/command_play.h"
#include "cli/command_process.h"
#include "cli/engine_options.h"
#include "cli/oscillator_options.h"
#include "cli/stream_options.h"

namespace velmora::cli {

namespace {

constexpr std::string_view STREAM_JSON =
    R"({"buffers", "underruns", "peakLoad", "overruns", "inputLosses", "peakFilterLoad", "device", )"
    R"("inputDevice": null without one, "rate", "framesPerBuffer", "seconds", "swaps"})";

CCommand processRow()
{
    return {
        .m_sName = "process",
        .m_sSummary = "runs an audio file through a plug-in into a new one",
        .m_sDescription =
            "Runs the audio file IN through the filter, faster than real time, into the new file OUT, which "
            "keeps IN's rate, channels, container and sample format whatever its name says: AIFF data stays "
            "AIFF under a name that ends in .wav. The new file appears under its name only when it is "
            "complete; a failure leaves every file as it was.",
        .m_arguments = {{"IN",
                         "Audio file to read: WAV, AIFF and others; mono or stereo.",
                         {EValueKind::File}},
                        {"OUT", "File to write; its name must hold .wav.", {EValueKind::File}}},
        .m_options =
            joined({engineOptions(), sidechainOptions(), {{"--force", "", "Overwrites OUT if it exists."}}}),
        .m_bTakesFilter = true,
        .m_sJsonResult =
            R"({"frames", "channels", "rate", "seconds", "xRealtime", "peak", "overs", "notFinite"})",
        .m_examples = {{"process voice.wav louder.wav --plugin Gain.so --set 0=6",
                        "Runs a recording through a plug-in with one control set."},
                       {"process mix.wav out.wav --plugin Ducker.so --sidechain voice.wav --force",
                        "Feeds the sidechain from a second file and overwrites out.wav."}},
        .m_pRun = runProcess,
    };
}

CCommand playRow()
{
    return {
        .m_sName = "play",
        .m_sSummary = "plays an audio file through a plug-in",
        .m_sDescription =
            "Plays the audio file IN through the filter on the output device, to its end. Without a filter "
            "the file is heard as it is.\n"
            "On a terminal a line shows the time, the meters (-60 to 0 dB), the load and the underruns while "
            "it runs; Ctrl-C ends it.",
        .m_arguments = {{"IN", "Audio file to play: WAV or AIFF; mono or stereo.", {EValueKind::File}}},
        .m_options = joined({{{"--loop", "", "Starts IN over at its end."}},
                             engineOptions(),
                             sidechainOptions(),
                             outputOptions(),
                             runningOptions()}),
        .m_bTakesFilter = true,
        .m_sJsonResult = STREAM_JSON,
        .m_examples = {{"play guitar.wav --plugin Fuzz.so --set 0=12",
                        "Plays a recording through a plug-in with one control set."},
                       {"play loop.wav --loop --plugin Fuzz.so --watch",
                        "Plays on, and goes over to each new build of the plug-in."},
                       {"play mix.wav --plugin Ducker.so --sidechain voice.wav --sidechain-loop",
                        "Feeds the sidechain from a second file."}},
        .m_pRun = runPlay,
    };
}

CCommand listenRow()
{
    return {
        .m_sName = "listen",
        .m_sSummary = "passes the sound card's input through a plug-in",
        .m_sDescription =
            "Passes what comes in at the input device through the filter to the output device, until Ctrl-C "
            "or as long as --seconds says. Without a filter the input is heard as it is. Use headphones when "
            "the input is a microphone.",
        .m_options =
            joined({engineOptions(), inputOptions(), outputOptions(), rateOptions(), runningOptions()}),
        .m_bTakesFilter = true,
        .m_sJsonResult = STREAM_JSON,
        .m_examples = {{"listen --plugin Fuzz.so", "Plays an instrument through a plug-in."},
                       {"listen --seconds 5 --json", "Measures the load of five seconds."}},
        .m_pRun = runListen,
    };
}

CCommand toneRow()
{
    return {
        .m_sName = "tone",
        .m_sSummary = "plays the test oscillator, or a plug-in that makes its own sound",
        .m_sDescription =
            "Passes the test oscillator through the filter to the output device, until Ctrl-C or as long as "
            "--seconds says. A plug-in without an audio input, such as a synthesizer, makes its own sound "
            "instead; it takes none of the oscillator's options.",
        .m_options =
            joined({oscillatorOptions(), engineOptions(), outputOptions(), rateOptions(), runningOptions()}),
        .m_bTakesFilter = true,
        .m_sJsonResult = STREAM_JSON,
        .m_examples = {{"tone --frequency 440 --amplitude -12 --seconds 2", "Plays a sine wave of 440 Hz."},
                       {"tone --sweep --low 20 --high 20000 --period 10 --plugin Filter.so",
                        "Sweeps through a filter again and again."},
                       {"tone --plugin Synth.so --set 0=220", "Plays a plug-in that makes its own sound."}},
        .m_pRun = runTone,
    };
}

CCommand oscRenderRow()
{
    std::vector<COption> options = oscillatorOptions();
    options.push_back(
        {"--seconds", "S", "Length in seconds; 10 unless given.", {EValueKind::Number, 0, 1e9}});
    options.push_back(
        {"--rate", "HZ", "Sample rate in Hz; 44100 unless given.", {EValueKind::WholeNumber, 1, 10000000}});
    options.push_back({"--channels",
                       "1|2",
                       "Channels, all with the same signal; 2 unless given.",
                       {EValueKind::WholeNumber, 1, 2}});
    options.push_back({"--force", "", "Overwrites OUT if it exists."});
    return {
        .m_sName = "osc render",
        .m_sSummary = "writes a test signal into an audio file",
        .m_sDescription =
            "Writes what the test oscillator plays into the WAV file OUT of 32-bit floats, faster than real "
            "time: the very samples that a stream plays from its start on. Options that a kind has no use "
            "for "
            "change nothing. The new file appears under its name only when it is complete.",
        .m_arguments = {{"OUT", "File to write; its name must hold .wav.", {EValueKind::File}}},
        .m_options = std::move(options),
        .m_sJsonResult = R"({"frames", "peak", "rms"})",
        .m_examples = {{"osc render a.wav --frequency 440 --amplitude -12 --seconds 2",
                        "Two seconds of a sine."},
                       {"osc render sweep.wav --sweep --low 20 --high 20000 --period 5 --seconds 5",
                        "A sine that rises through all that one hears."},
                       {"osc render bursts.wav --kind pulsed-noise --pulse-rate 4 --duty 10 --seed 1",
                        "Short bursts of noise, the same ones at every run."},
                       {"osc render click.wav --kind single-impulse --amplitude 0 --seconds 1 --rate 48000",
                        "One sample of full scale, then silence."}},
        .m_pRun = runOscRender,
    };
}

CCommand measureRow()
{
    return {
        .m_sName = "measure",
        .m_sSummary = "measures the impulse, step, frequency or phase response of a plug-in",
        .m_sDescription =
            "Passes an impulse or a step through the filter and prints what comes out, or the magnitude or "
            "phase of its spectrum. Without --json and -o it prints a summary and a few values.",
        .m_arguments = {{"KIND",
                         "impulse, step, frequency (dB) or phase (degrees, not unwrapped).",
                         {.m_eKind = EValueKind::Choice,
                          .m_choices = {"impulse", "step", "frequency", "phase"}}}},
        .m_options =
            {
                {"--rate",
                 "HZ",
                 "Sample rate in Hz; 44100 unless given.",
                 {EValueKind::WholeNumber, 1, 10000000}},
                {"--length",
                 "N",
                 "Frames to measure; 1024 unless given. For frequency and phase a power of two.",
                 {EValueKind::WholeNumber, 1, 16777216}},
                {"--normalize", "", "Scales the largest sample of an impulse or step response to 1."},
                {"-o", "FILE", "Writes the left channel's values to a file.", {EValueKind::File}},
                {"--format",
                 "c|matlab|csv",
                 "Format of that file; unless given it follows from its name: .c, .h and .cpp a C array, .m "
                 "and .txt MATLAB, .csv comma-separated.",
                 {.m_eKind = EValueKind::Choice, .m_choices = {"c", "matlab", "csv"}},
                 false,
                 {},
                 "-o"},
            },
        .m_bTakesFilter = true,
        .m_sJsonResult =
            R"({"rate", "frames", "left": [...], "right": [...]}; frequency also "leftPeak" and )"
            R"("rightPeak": {"maxdB", "maxHz", "dcdB"})",
        .m_examples = {{"measure frequency --plugin Filter.so --length 8192", "Prints a frequency response."},
                       {"measure impulse --plugin Filter.so -o h.csv", "Saves an impulse response."}},
        .m_pRun = runMeasure,
    };
}

} // namespace

std::vector<CCommand> audioCommandRows()
{
    return {processRow(), playRow(), listenRow(), toneRow(), oscRenderRow(), measureRow()};
}

} // namespace velmora::cli
