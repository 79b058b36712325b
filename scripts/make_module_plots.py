#!/usr/bin/env python3
"""Draws the response plots of docs/modules.md from what velmora-cli measures.

Usage: scripts/make_module_plots.py [VELMORA_CLI]     build/release/bin/velmora-cli unless given

The same program draws the same bytes. Only the standard library is used.
"""
import json
import math
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
IMAGES = ROOT / "docs" / "images"
RATE = 48000
LENGTH = 65536
LOW, HIGH = 20.0, 20000.0  # Hz
POINTS = 240  # per curve, equally spaced on the screen

# Each plot: file, lowest and highest dB, distance of the lines, and the curves: label, module, its settings
# as VALUE behind the control's name.
PLOTS = [
    ("module-shelves.svg", -15, 15, 5, [
        ("low shelf +9 dB", "MultiFilter", ["Filter Type=0", "fc=200", "Boost/Cut=9"]),
        ("low shelf -9 dB", "MultiFilter", ["Filter Type=0", "fc=200", "Boost/Cut=-9"]),
        ("high shelf +9 dB", "MultiFilter", ["Filter Type=1", "fc=4000", "Boost/Cut=9"]),
        ("high shelf -9 dB", "MultiFilter", ["Filter Type=1", "fc=4000", "Boost/Cut=-9"])]),
    ("module-graphic.svg", -15, 15, 5, [
        ("B +9 dB", "MultiFilter", ["Filter Type=2", "fc=250", "Boost/Cut=9"]),
        ("B -9 dB", "MultiFilter", ["Filter Type=2", "fc=250", "Boost/Cut=-9"]),
        ("A +9 dB", "MultiFilter", ["Filter Type=3", "fc=3000", "Q=2", "Boost/Cut=9"]),
        ("A 0 dB", "MultiFilter", ["Filter Type=3", "fc=3000", "Q=2", "Boost/Cut=0"])]),
    ("module-hp-lp.svg", -40, 20, 10, [
        ("1st LPF", "HP/LP", ["Filter Type=1", "fc=1000"]),
        ("2nd LPF, Q 0.707", "HP/LP", ["Filter Type=3", "fc=1000"]),
        ("2nd LPF, Q 5", "HP/LP", ["Filter Type=3", "fc=1000", "Q=5"]),
        ("2nd HPF, Q 0.707", "HP/LP", ["Filter Type=2", "fc=1000"])]),
    ("module-linkwitz-riley.svg", -40, 10, 10, [
        ("low-pass", "Linkwitz-Riley Filter", ["Filter Type=0", "fc=1000"]),
        ("high-pass", "Linkwitz-Riley Filter", ["Filter Type=1", "fc=1000"]),
        ("BPF 500 Hz to 2 kHz", "Linkwitz-Riley BPF", [])]),
    ("module-equalizer.svg", -15, 15, 5, [
        ("all at 0 dB", "Ten Band", []),
        ("125 Hz +6, 2 kHz -9, 8 kHz +3", "Ten Band", ["125 Hz=6", "2 kHz=-9", "8 kHz=3"]),
        ("shelves -6 and +6", "Ten Band", ["Lo Shelf=-6", "Hi Shelf=6"])]),
    ("module-exciters.svg", -25, 15, 5, [
        ("HF Exciter", "HF Exciter", []),
        ("HF Exciter 2, Type A", "HF Exciter 2", ["Hi Gain=6"]),
        ("HF Exciter 2, Type C", "HF Exciter 2", ["Exciter Type=2", "Hi Gain=6"]),
        ("XM1", "HF Exciter XM1", [])]),
    ("module-smoothing-volume.svg", -40, 10, 10, [
        ("Smoothing, 4 samples", "SmoothingFilter", ["0=4"]),
        ("Smoothing, 32 samples", "SmoothingFilter", ["0=32"]),
        ("Volume, shelf +6 dB at 200 Hz", "Volume", ["1=200", "2=6"])]),
    ("module-delay.svg", -25, 10, 5, [
        ("8 samples, no feedback", "StereoDelay", ["Delay=8", "Feedback=0"]),
        ("8 samples, feedback 50 %", "StereoDelay", ["Delay=8", "Feedback=50"])]),
]


def answer(program, *words):
    return json.loads(subprocess.run([program, "--json", *words], check=True, capture_output=True,
                                     text=True).stdout)


def options(program, module, settings):
    """The settings with the ids of the controls; a control is given by its name or its place."""
    controls = answer(program, "plugin", "inspect", "--module", module)["controls"]
    ids = {control["m_sName"]: control["uControlId"] for control in controls}
    ids.update({str(place): control["uControlId"] for place, control in enumerate(controls)})
    words = []
    for setting in settings:
        name, value = setting.rsplit("=", 1)
        words += ["--set", f"{ids[name]}={value}"]
    return words


def measured(program, module, settings):
    """Pairs of Hz and dB of the left channel."""
    values = answer(program, "measure", "frequency", "--module", module, "--rate", str(RATE), "--length",
                    str(LENGTH), *options(program, module, settings))["left"]
    bin_width = RATE / 2.0 / len(values)
    curve = []
    for point in range(POINTS + 1):
        hz = LOW * (HIGH / LOW) ** (point / POINTS)
        index, fraction = divmod(hz / bin_width, 1.0)
        here, there = (float(values[int(index) + i]) for i in (0, 1))
        if math.isfinite(here) and math.isfinite(there):
            curve.append((hz, here + (there - here) * fraction))
    return curve


WIDTH, HEIGHT = 720, 300
LEFT, RIGHT, TOP, BOTTOM = 48, 10, 12, 46
COLOURS = ("#2a78d6", "#d1495b", "#1f9d74", "#b57a00", "#7a5fc0")
STYLE = """
text{font:12px sans-serif;fill:#444}
.grid{stroke:#ccc;stroke-width:1}
.zero{stroke:#888;stroke-width:1}
.curve{fill:none;stroke-width:2}
@media(prefers-color-scheme:dark){text{fill:#bbb}.grid{stroke:#444}.zero{stroke:#888}}
"""


def x_of(hz):
    return LEFT + (WIDTH - LEFT - RIGHT) * math.log(hz / LOW) / math.log(HIGH / LOW)


def drawn(low, high, step, curves):
    """The SVG text of curves, each a label and its points."""
    def y_of(db):
        return TOP + (HEIGHT - TOP - BOTTOM) * (high - db) / (high - low)

    bottom = HEIGHT - BOTTOM
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
             f'width="{WIDTH}" height="{HEIGHT}" role="img">', f"<style>{STYLE}</style>",
             f'<clipPath id="area"><rect x="{LEFT}" y="{TOP}" width="{WIDTH - LEFT - RIGHT}" '
             f'height="{bottom - TOP}"/></clipPath>']
    for hz, label in ((20, "20"), (50, "50"), (100, "100"), (200, "200"), (500, "500"), (1000, "1k"),
                      (2000, "2k"), (5000, "5k"), (10000, "10k"), (20000, "20k Hz")):
        x = x_of(hz)
        anchor = "end" if hz == 20000 else "middle"
        parts.append(f'<path class="grid" d="M{x:.1f} {TOP}V{bottom}"/>')
        parts.append(f'<text x="{x:.1f}" y="{bottom + 16}" text-anchor="{anchor}">{label}</text>')
    for db in range(low, high + 1, step):
        y = y_of(db)
        parts.append(f'<path class="{"zero" if db == 0 else "grid"}" d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}"/>')
        parts.append(f'<text x="{LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{db}{" dB" if db == high else ""}'
                     "</text>")
    x = LEFT
    for index, (label, points) in enumerate(curves):
        colour = COLOURS[index % len(COLOURS)]
        path = "L".join(f"{x_of(hz):.1f} {y_of(max(db, low - 20.0)):.1f}" for hz, db in points)
        parts.append(f'<path class="curve" stroke="{colour}" clip-path="url(#area)" d="M{path}"/>')
        parts.append(f'<path class="curve" stroke="{colour}" d="M{x} {HEIGHT - 12}h18"/>')
        parts.append(f'<text x="{x + 23}" y="{HEIGHT - 8}">{label}</text>')
        x += 40 + round(6.6 * len(label))
    return "\n".join(parts + ["</svg>", ""])


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/release/bin/velmora-cli")
    IMAGES.mkdir(exist_ok=True)
    for name, low, high, step, curves in PLOTS:
        points = [(label, measured(program, module, settings)) for label, module, settings in curves]
        (IMAGES / name).write_text(drawn(low, high, step, points), encoding="utf-8")
        print(IMAGES / name)


if __name__ == "__main__":
    main()
