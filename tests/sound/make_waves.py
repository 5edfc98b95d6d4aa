# Writes the sound files the sound tests play, with Python's own wave module
# (and, for floating point, by hand), so that the decoder is checked against
# files it did not write.
import math, struct, sys, wave

folder = sys.argv[1]

with wave.open(folder + "/u8.wav", "wb") as w:  # the drill's kind: 8-bit mono
    w.setnchannels(1); w.setsampwidth(1); w.setframerate(22050)
    w.writeframes(bytes((i * 7) % 256 for i in range(10000)))

with wave.open(folder + "/s16.wav", "wb") as w:
    w.setnchannels(2); w.setsampwidth(2); w.setframerate(44100)
    w.writeframes(b"".join(struct.pack("<hh", (i * 37) % 65536 - 32768, -((i * 11) % 30000))
                           for i in range(5000)))

def float_wave(name, samples, rate=8000):
    data = b"".join(struct.pack("<f", s) for s in samples)
    fmt = struct.pack("<HHIIHHH", 3, 1, rate, rate * 4, 4, 32, 0)
    body = (b"WAVE" + b"fmt " + struct.pack("<I", len(fmt)) + fmt +
            b"fact" + struct.pack("<II", 4, len(samples)) +
            b"data" + struct.pack("<I", len(data)) + data)
    with open(folder + "/" + name, "wb") as f:
        f.write(b"RIFF" + struct.pack("<I", len(body)) + body)

float_wave("float.wav", [0.5 * math.sin(i * 0.05) for i in range(3000)])
float_wave("silent.wav", [0.0] * 500)
# Half a second at 8,000 Hz, for pacing.
with wave.open(folder + "/half_second.wav", "wb") as w:
    w.setnchannels(1); w.setsampwidth(2); w.setframerate(8000)
    w.writeframes(b"\x01\x00" * 4000)
