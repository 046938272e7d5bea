#include "tools/images/picture.h"

#include <stb_image.h>
#include <stb_image_resize.h>
#include <stb_image_write.h>

#include <cstdint>
#include <memory>

namespace tools {

constexpr int kChannels = 4;

static const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

static size_t sizeOf(int width, int height) {
  return static_cast<size_t>(width) * height * kChannels;
}

static size_t numberAt(const std::string& bytes, size_t at) {
  size_t number = 0;
  for (size_t i = at; i < at + sizeof(uint32_t); ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[i]);
  }
  return number;
}

// Whether the chunks fill the file up to the last one. The library allocates what a chunk claims.
static bool hasWholeChunks(const std::string& png) {
  constexpr size_t kSignature = 8;
  constexpr size_t kAroundChunk = 12;  // its length, its type, its checksum
  for (size_t at = kSignature; at < png.size();) {
    const size_t left = png.size() - at;
    if (left < kAroundChunk || numberAt(png, at) > left - kAroundChunk) {
      return false;
    }
    if (png.compare(at + sizeof(uint32_t), 4, "IEND") == 0) {
      return true;
    }
    at += numberAt(png, at) + kAroundChunk;
  }
  return false;
}

std::optional<Picture> decodePng(const std::string& bytes) {
  const auto size = static_cast<int>(bytes.size());
  if (bytes.size() > INT32_MAX || !hasWholeChunks(bytes)) {
    return std::nullopt;
  }
  Picture picture;
  int channels = 0;
  const bool isPicture =
      stbi_info_from_memory(bytesOf(bytes), size, &picture.width, &picture.height, &channels) != 0;
  if (!isPicture || picture.width > LONGEST_SIDE || picture.height > LONGEST_SIDE) {
    return std::nullopt;
  }
  const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
      stbi_load_from_memory(bytesOf(bytes), size, &picture.width, &picture.height, &channels,
                            kChannels),
      stbi_image_free);
  if (pixels == nullptr) {
    return std::nullopt;
  }
  picture.pixels.assign(reinterpret_cast<const char*>(pixels.get()),
                        sizeOf(picture.width, picture.height));
  return picture;
}

std::string encodePng(const Picture& picture) {
  std::string png;
  const auto append = [](void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data),
                                               static_cast<size_t>(size));
  };
  stbi_write_png_to_func(append, &png, picture.width, picture.height, kChannels,
                         picture.pixels.data(), picture.width * kChannels);
  return png;
}

Picture scaled(const Picture& picture, int width, int height) {
  if (width == picture.width && height == picture.height) {
    return picture;  // the filter would blur it
  }
  Picture result{width, height, std::string(sizeOf(width, height), '\0')};
  constexpr int kOpacity = 3;  // the channel
  stbir_resize_uint8_srgb(bytesOf(picture.pixels), picture.width, picture.height, 0,
                          reinterpret_cast<unsigned char*>(result.pixels.data()), width, height, 0,
                          kChannels, kOpacity, 0);
  return result;
}

static unsigned char mixed(unsigned char below, unsigned char above, unsigned opacity) {
  constexpr unsigned kOpaque = 255;
  return static_cast<unsigned char>((above * opacity + below * (kOpaque - opacity) + kOpaque / 2) /
                                    kOpaque);
}

static void paintPixel(char* below, const char* above) {
  const auto opacity = static_cast<unsigned char>(above[kChannels - 1]);
  for (int channel = 0; channel < kChannels - 1; ++channel) {
    below[channel] = static_cast<char>(mixed(static_cast<unsigned char>(below[channel]),
                                             static_cast<unsigned char>(above[channel]), opacity));
  }
}

void paint(Picture* picture, const Picture& top, int x, int y) {
  for (int row = 0; row < top.height; ++row) {
    for (int column = 0; column < top.width; ++column) {
      const int toX = x + column;
      const int toY = y + row;
      if (toX >= 0 && toX < picture->width && toY >= 0 && toY < picture->height) {
        paintPixel(&picture->pixels[sizeOf(picture->width, toY) + sizeOf(toX, 1)],
                   &top.pixels[sizeOf(top.width, row) + sizeOf(column, 1)]);
      }
    }
  }
}

}  // namespace tools
