#!/usr/bin/env python3
"""Makes the recording that comes with the examples, and its sidechain companion.

    scripts/make_demo_recording.py [FOLDER]

writes demo.wav (two bars at 120 beats a minute: plucked strings, bass, drums; stereo) and
demo-kick.wav (the bass drum alone; mono, the same length) to FOLDER, by default examples/audio.
Both are 44.1 kHz, 16 bits, 4 seconds. Needs nothing but Python 3, and gives the same bytes each time.

The strings follow Karplus and Strong, "Digital Synthesis of Plucked-String and Drum Timbres" (1983),
tuned by an all-pass as in Jaffe and Smith, "Extensions of the Karplus-Strong Plucked-String
Algorithm" (1983).
"""

import array
import math
import pathlib
import sys
import wave

RATE = 44100  # Hz
BEAT = 0.5  # seconds
LENGTH = 8 * BEAT  # seconds: two bars of four beats
FRAMES = round(LENGTH * RATE)
PEAK = 10.0 ** (-3.0 / 20.0)  # -3 dBFS
FADE_OUT = 0.35  # seconds

# Beat, MIDI note, position from 0.0 (left) to 1.0 (right), level.
STRINGS = [
    (0.0, 57, 0.12, 1.0), (0.5, 64, 0.88, 0.8), (1.0, 69, 0.25, 0.9), (1.5, 71, 0.90, 0.7),
    (2.0, 72, 0.10, 1.0), (2.5, 71, 0.90, 0.7), (3.0, 64, 0.40, 0.8), (3.5, 60, 0.65, 0.7),
    (4.0, 53, 0.12, 1.0), (4.5, 60, 0.88, 0.8), (5.0, 64, 0.25, 0.9), (5.5, 67, 0.90, 0.7),
    (6.0, 55, 0.30, 0.9), (6.0, 62, 0.50, 0.8), (6.0, 67, 0.80, 0.8), (6.5, 71, 0.80, 0.8),
    (7.0, 69, 0.25, 0.8), (7.0, 64, 0.65, 0.8),
]  # fmt: skip

# Beat, MIDI note, length in beats.
BASS = [
    (0.0, 33, 1.25), (1.5, 33, 0.4), (2.0, 45, 0.75), (3.0, 40, 0.9),
    (4.0, 29, 1.25), (5.5, 29, 0.4), (6.0, 31, 0.9), (7.0, 33, 1.0),
]  # fmt: skip

KICKS = [0.0, 1.75, 2.5, 4.0, 5.75, 6.5]  # beats
SNARES = [1.0, 3.0, 5.0, 7.0]
HATS = [(0.5 * n, 1.0 if n % 2 else 0.55) for n in range(15)]  # beat, level


class Noise:
    """Uniform noise from -1.0 to +1.0, the same on every machine (Knuth's MMIX generator)."""

    def __init__(self, seed):
        self.state = seed

    def next(self):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) & 0xFFFFFFFFFFFFFFFF
        return (self.state >> 32) / 2147483648.0 - 1.0


def hertz(note):
    return 440.0 * 2.0 ** ((note - 69) / 12.0)


def string(note, seconds, seed):
    """One plucked string: noise circling in a delay line that averages neighbours.

    The loop is delay + 0.5 (average) + all-pass; the all-pass makes up the fraction that is left.
    """
    period = RATE / hertz(note)
    delay = int(period - 0.5 - 0.3)
    fraction = period - 0.5 - delay
    allpass = (1.0 - fraction) / (1.0 + fraction)
    loss = 0.001 ** (period / RATE / (4.0 - 0.03 * (note - 50)))  # 60 dB in about 4 seconds

    noise = Noise(seed)
    line = [noise.next() for _ in range(delay)]
    for _ in range(2):  # a soft finger: two turns of a three-point average
        line = [(line[i - 1] + line[i] + line[(i + 1) % delay]) / 3.0 for i in range(delay)]
    pluck = max(1, delay // 5)  # plucked at a fifth of the string: every fifth harmonic is missing
    line = [line[i] - line[i - pluck] for i in range(delay)]
    mean = math.fsum(line) / delay
    line = [value - mean for value in line]
    peak = max(abs(value) for value in line)
    line = [value / peak for value in line]

    out = []
    at, last, through_in, through_out = 0, 0.0, 0.0, 0.0
    for n in range(int(seconds * RATE)):
        value = line[at]
        average = loss * 0.5 * (value + last)
        last = value
        through_out = allpass * (average - through_out) + through_in
        through_in = average
        line[at] = through_out
        at = at + 1 if at + 1 < delay else 0
        out.append(value * min(1.0, n / 60.0))
    return out


def bass(note, seconds, _seed):
    """A sine with two faint harmonics and rounded ends."""
    step = 2.0 * math.pi * hertz(note) / RATE
    count = int(seconds * RATE)
    out = []
    for n in range(count):
        phase = step * n
        tone = math.sin(phase) + 0.35 * math.sin(2.0 * phase) + 0.12 * math.sin(3.0 * phase)
        envelope = min(1.0, n / 350.0, (count - n) / 1500.0) * math.exp(-1.6 * n / RATE)
        out.append(tone * envelope)
    return out


def kick():
    """A sine that falls from 160 to 48 Hz with a time constant of 35 ms."""
    low, high, fall = 48.0, 160.0, 0.035
    out = []
    for n in range(int(0.35 * RATE)):
        t = n / RATE
        turns = low * t + (high - low) * fall * (1.0 - math.exp(-t / fall))
        out.append(math.sin(2.0 * math.pi * turns) * math.exp(-t / 0.11) * min(1.0, (0.35 - t) / 0.05))
    return out


def snare(seed):
    """Two drum-head tones under rattling noise."""
    noise = Noise(seed)
    out, last = [], 0.0
    for n in range(int(0.25 * RATE)):
        t = n / RATE
        rattle = noise.next()
        head = math.sin(2.0 * math.pi * 187.0 * t) + 0.6 * math.sin(2.0 * math.pi * 331.0 * t)
        tone = 0.5 * head * math.exp(-t / 0.045) + 0.6 * (rattle - 0.6 * last) * math.exp(-t / 0.065)
        last = rattle
        out.append(tone * min(1.0, n / 20.0, (0.25 - t) / 0.03))
    return out


def hat(seed):
    """Noise differenced twice, so that only the top is left."""
    noise = Noise(seed)
    out, last, before = [], 0.0, 0.0
    for n in range(int(0.09 * RATE)):
        t = n / RATE
        value = noise.next()
        bright = 0.25 * (value - 2.0 * last + before)
        before, last = last, value
        out.append(bright * math.exp(-t / 0.022) * min(1.0, n / 10.0, (0.09 - t) / 0.01))
    return out


class Mix:
    """Two channels that sounds are added to."""

    def __init__(self):
        self.left = [0.0] * FRAMES
        self.right = [0.0] * FRAMES

    def add(self, beat, sound, position, level):
        """Adds a sound at a beat; the position keeps the power constant."""
        left = level * math.cos(0.5 * math.pi * position)
        right = level * math.sin(0.5 * math.pi * position)
        start = round(beat * BEAT * RATE)
        for n, value in enumerate(sound[: FRAMES - start], start):
            self.left[n] += left * value
            self.right[n] += right * value

    def add_reflections(self):
        """A few early reflections, crossed between the channels: a small room."""
        left, right = self.left[:], self.right[:]
        for milliseconds, level in ((11.3, 0.16), (17.9, -0.13), (29.7, 0.10), (41.1, -0.07)):
            late = round(milliseconds * RATE / 1000.0)
            for n in range(late, FRAMES):
                self.left[n] += level * right[n - late]
                self.right[n] += level * left[n - late]


def make_kick_track():
    mix, sound = Mix(), kick()
    for beat in KICKS:
        mix.add(beat, sound, 0.0, 1.0)
    return mix.left


def make_phrase():
    mix = Mix()
    for number, (beat, note, position, level) in enumerate(STRINGS):
        seconds = min(2.0, LENGTH - beat * BEAT)
        mix.add(beat, string(note, seconds, 1000 + number), position, 0.95 * level)
    for number, (beat, level) in enumerate(HATS):
        mix.add(beat, hat(3000 + number), 0.68, 0.34 * level)
    for number, beat in enumerate(SNARES):
        mix.add(beat, snare(2000 + number), 0.42, 0.50)
    mix.add_reflections()
    for beat, note, beats in BASS:
        mix.add(beat, bass(note, beats * BEAT, 0), 0.5, 0.26)
    sound = kick()
    for beat in KICKS:
        mix.add(beat, sound, 0.5, 0.62)
    return mix.left, mix.right


def write_wave(path, channels):
    """Fades the end out, brings the peak to -3 dBFS and writes 16 bits."""
    fade = round(FADE_OUT * RATE)
    gain = PEAK / max(abs(value) for channel in channels for value in channel)
    samples = array.array("h")
    for n in range(FRAMES):
        left = min(1.0, (FRAMES - 1 - n) / fade)
        scale = 32767.0 * gain * 0.5 * (1.0 - math.cos(math.pi * left))
        for channel in channels:
            samples.append(round(scale * channel[n]))
    if sys.byteorder == "big":
        samples.byteswap()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(len(channels))
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(samples.tobytes())


def main():
    if len(sys.argv) > 2 or any(argument in ("-h", "--help") for argument in sys.argv[1:]):
        print(__doc__.strip())
        return 0 if len(sys.argv) == 2 else 2
    if len(sys.argv) == 2:
        folder = pathlib.Path(sys.argv[1])
    else:
        folder = pathlib.Path(__file__).resolve().parent.parent / "examples" / "audio"
    folder.mkdir(parents=True, exist_ok=True)
    write_wave(folder / "demo.wav", make_phrase())
    write_wave(folder / "demo-kick.wav", (make_kick_track(),))
    return 0


if __name__ == "__main__":
    sys.exit(main())
