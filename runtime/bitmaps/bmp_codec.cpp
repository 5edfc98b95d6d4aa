#include "bitmaps/bmp_codec.h"

#include <cmath>
#include <cstring>

namespace kelp {
namespace {

// Little-endian fields at checked offsets.
class Fields {
public:
    Fields(const uint8_t *data, size_t size) : mData(data), mSize(size) {}
    bool Has(size_t offset, size_t width) const {
        return offset <= mSize && width <= mSize - offset;
    }
    uint32_t U16(size_t offset) const { return mData[offset] | mData[offset + 1] << 8; }
    uint32_t U32(size_t offset) const {
        return U16(offset) | static_cast<uint32_t>(U16(offset + 2)) << 16;
    }

private:
    const uint8_t *mData;
    size_t mSize;
};

bool Fail(std::string *error, const char *why) {
    if (error)
        *error = why;
    return false;
}

void Put16(std::string &out, uint32_t v) {
    out += static_cast<char>(v & 0xFF);
    out += static_cast<char>(v >> 8 & 0xFF);
}
void Put32(std::string &out, uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}

} // namespace

bool DecodeBmp(const uint8_t *data, size_t size, RGBImage &out, std::string *error) {
    out = RGBImage();
    if (!data)
        return Fail(error, "no data");
    Fields f(data, size);
    if (!f.Has(0, 18) || data[0] != 'B' || data[1] != 'M')
        return Fail(error, "not a BMP file");
    uint32_t pixelOffset = f.U32(10);
    uint32_t headerSize = f.U32(14);
    int64_t width, height;
    uint32_t bits;
    size_t paletteEntry;
    if (headerSize == 12) {
        if (!f.Has(14, 12))
            return Fail(error, "header past the end of the data");
        width = static_cast<int16_t>(f.U16(18));
        height = static_cast<int16_t>(f.U16(20));
        bits = f.U16(24);
        paletteEntry = 3;
    } else if (headerSize >= 40 && headerSize <= 1024) {
        if (!f.Has(14, 40))
            return Fail(error, "header past the end of the data");
        width = static_cast<int32_t>(f.U32(18));
        height = static_cast<int32_t>(f.U32(22));
        bits = f.U16(28);
        paletteEntry = 4;
    } else {
        return Fail(error, "unknown header size");
    }
    bool topDown = height < 0;
    if (topDown)
        height = -height;
    if (width < 1 || height < 1 || width > kBmpMaxSide || height > kBmpMaxSide ||
        width * height > kBmpMaxPixels)
        return Fail(error, "picture size out of range");
    if (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32)
        return Fail(error, "unsupported bit count");

    // The palette runs from behind the header up to the pixels, at most 256.
    uint8_t palette[256][3] = {};
    if (bits <= 8) {
        size_t start = 14 + static_cast<size_t>(headerSize);
        if (pixelOffset > size)
            return Fail(error, "pixel offset past the end of the data");
        size_t count = pixelOffset > start ? (pixelOffset - start) / paletteEntry : 0;
        if (count > 256)
            count = 256;
        for (size_t i = 0; i < count; ++i) {
            const uint8_t *entry = data + start + i * paletteEntry;
            palette[i][0] = entry[2];
            palette[i][1] = entry[1];
            palette[i][2] = entry[0];
        }
    }

    int64_t rowBytes = (width * bits + 31) / 32 * 4;
    if (!f.Has(pixelOffset, static_cast<size_t>(rowBytes * height)))
        return Fail(error, "pixel rows past the end of the data");

    out.width = static_cast<int32_t>(width);
    out.height = static_cast<int32_t>(height);
    out.rgb.resize(static_cast<size_t>(width * height * 3));
    for (int64_t row = 0; row < height; ++row) {
        const uint8_t *src = data + pixelOffset + row * rowBytes;
        int64_t target = topDown ? row : height - 1 - row;
        uint8_t *dst = out.rgb.data() + target * width * 3;
        for (int64_t x = 0; x < width; ++x, dst += 3) {
            switch (bits) {
            case 1: {
                uint8_t v = (src[x >> 3] >> (7 - (x & 7)) & 1) ? 0xFF : 0x00;
                dst[0] = dst[1] = dst[2] = v;
                break;
            }
            case 4:
                std::memcpy(dst, palette[(x & 1) ? src[x >> 1] & 0x0F : src[x >> 1] >> 4], 3);
                break;
            case 8: std::memcpy(dst, palette[src[x]], 3); break;
            default: {
                const uint8_t *p = src + x * (bits / 8);
                dst[0] = p[2];
                dst[1] = p[1];
                dst[2] = p[0];
            }
            }
        }
    }
    return true;
}

std::string EncodeBmp(const uint8_t *rgb, int32_t width, int32_t height, int32_t stride,
                      int32_t channels, int32_t horizontalDpi, int32_t verticalDpi) {
    if (!rgb || width < 1 || height < 1 || (channels != 3 && channels != 4))
        return std::string();
    uint32_t rowBytes = (static_cast<uint32_t>(width) * 3 + 3) / 4 * 4;
    uint32_t imageBytes = rowBytes * static_cast<uint32_t>(height);
    std::string out;
    out.reserve(54 + imageBytes);
    out += "BM";
    Put32(out, 54 + imageBytes);
    Put32(out, 0);
    Put32(out, 54);
    Put32(out, 40);
    Put32(out, static_cast<uint32_t>(width));
    Put32(out, static_cast<uint32_t>(height));
    Put16(out, 1);
    Put16(out, 24);
    Put32(out, 0);
    Put32(out, 0);
    Put32(out, static_cast<uint32_t>(std::lround(horizontalDpi * 39.37007874015748)));
    Put32(out, static_cast<uint32_t>(std::lround(verticalDpi * 39.37007874015748)));
    Put32(out, 0);
    Put32(out, 0);
    for (int32_t row = height - 1; row >= 0; --row) {
        const uint8_t *src = rgb + static_cast<size_t>(row) * stride;
        for (int32_t x = 0; x < width; ++x, src += channels) {
            out += static_cast<char>(src[2]);
            out += static_cast<char>(src[1]);
            out += static_cast<char>(src[0]);
        }
        out.append(rowBytes - static_cast<uint32_t>(width) * 3, '\0');
    }
    return out;
}

} // namespace kelp
