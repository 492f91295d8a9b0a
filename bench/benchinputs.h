#pragma once
// Deterministic benchmark inputs: 24-bit BMP skin pictures (gradients, noise, sharp-edged panels
// and buttons, glyph-like marks, as in a real window picture), English-like text and random bytes.
// The same arguments always give the same bytes.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace skin::bench {

// A small, fast, fully specified generator (xorshift64*), so inputs do not depend on the library.
class InputRandom {
public:
    explicit InputRandom(std::uint64_t seed) : state_(seed ? seed : 1) {}
    std::uint64_t Next() {
        state_ ^= state_ >> 12;
        state_ ^= state_ << 25;
        state_ ^= state_ >> 27;
        return state_ * 0x2545F4914F6CDD1DULL;
    }
    int Below(int n) { return static_cast<int>(Next() % static_cast<std::uint64_t>(n)); }

private:
    std::uint64_t state_;
};

struct Rgb {
    int r, g, b;
};

inline void PutLe(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

// A window picture of width x height pixels as a complete 24-bit BMP file.
inline std::string SkinPictureBmp(int width, int height, std::uint64_t seed = 1) {
    InputRandom rng(seed);
    const int rowBytes = (width * 3 + 3) / 4 * 4;
    std::string pixels(static_cast<std::size_t>(rowBytes) * height, '\0');
    auto clamp = [](int v) { return std::clamp(v, 0, 255); };
    auto put = [&](int x, int y, Rgb c) {
        // BMP rows run bottom-up, pixels as blue, green, red.
        const std::size_t at = static_cast<std::size_t>(height - 1 - y) * rowBytes + static_cast<std::size_t>(x) * 3;
        pixels[at] = static_cast<char>(clamp(c.b));
        pixels[at + 1] = static_cast<char>(clamp(c.g));
        pixels[at + 2] = static_cast<char>(clamp(c.r));
    };
    const int titleHeight = std::max(8, height / 14);
    const int border = std::max(2, width / 200);
    // Panels and buttons: flat fills with bevelled, sharp edges.
    struct Box {
        int x0, y0, x1, y1;
        Rgb fill;
    };
    std::array<Box, 12> boxes{};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const int w = width / 10 + rng.Below(width / 4);
        const int h = height / 14 + rng.Below(height / 5);
        const int x = border + rng.Below(std::max(1, width - w - 2 * border));
        const int y = titleHeight + border + rng.Below(std::max(1, height - h - titleHeight - 2 * border));
        boxes[i] = {x, y, x + w, y + h, {150 + rng.Below(100), 150 + rng.Below(100), 170 + rng.Below(80)}};
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Rgb c;
            const int noise = rng.Below(7) - 3;
            if (x < border || y < border || x >= width - border || y >= height - border) {
                c = {40, 40, 60};  // frame
            } else if (y < titleHeight) {
                // Title bar: a horizontal blue gradient with a light sheen near the top.
                const int t = x * 255 / width;
                const int sheen = (titleHeight - y) * 40 / titleHeight;
                c = {20 + t / 4 + sheen, 60 + t / 3 + sheen, 160 + t / 3 + sheen};
            } else {
                // Body: a soft vertical gradient with sensor-like noise.
                const int t = (y - titleHeight) * 255 / (height - titleHeight);
                c = {200 - t / 5 + noise, 210 - t / 6 + noise, 225 - t / 8 + noise};
            }
            put(x, y, c);
        }
    }
    for (const Box& box : boxes) {
        for (int y = box.y0; y < box.y1; ++y) {
            for (int x = box.x0; x < box.x1; ++x) {
                Rgb c = box.fill;
                if (x == box.x0 || y == box.y0) c = {255, 255, 255};           // highlight edge
                else if (x == box.x1 - 1 || y == box.y1 - 1) c = {64, 64, 64};  // shadow edge
                else if ((x / 3 + y / 5) % 11 == 0 && (y - box.y0) % 14 < 9) c = {20, 20, 30};  // glyph-like marks
                put(x, y, c);
            }
        }
    }
    std::string bmp;
    const std::uint32_t headerSize = 14 + 40;
    bmp += "BM";
    PutLe(bmp, headerSize + static_cast<std::uint32_t>(pixels.size()), 4);
    PutLe(bmp, 0, 4);
    PutLe(bmp, headerSize, 4);
    PutLe(bmp, 40, 4);
    PutLe(bmp, static_cast<std::uint32_t>(width), 4);
    PutLe(bmp, static_cast<std::uint32_t>(height), 4);
    PutLe(bmp, 1, 2);
    PutLe(bmp, 24, 2);
    PutLe(bmp, 0, 4);
    PutLe(bmp, static_cast<std::uint32_t>(pixels.size()), 4);
    PutLe(bmp, 3780, 4);  // 96 dots per inch
    PutLe(bmp, 3780, 4);
    PutLe(bmp, 0, 4);
    PutLe(bmp, 0, 4);
    return bmp + pixels;
}

// English-like prose: common words with a skewed choice, sentences, punctuation, line breaks.
inline std::string EnglishText(std::size_t size, std::uint64_t seed = 2) {
    static const char* const kWords[] = {
        "the", "of", "and", "to", "a", "in", "is", "that", "for", "it", "as", "was", "with", "be",
        "by", "on", "not", "he", "this", "are", "or", "his", "from", "at", "which", "but", "have",
        "an", "had", "they", "you", "were", "their", "one", "all", "we", "can", "her", "has",
        "there", "been", "if", "more", "when", "will", "would", "who", "so", "no", "window",
        "skin", "message", "picture", "colour", "button", "designer", "package", "friend", "send",
        "receive", "evening", "morning", "letter", "river", "garden", "quietly", "remember",
        "through", "between", "however", "because", "little", "country", "question", "answer",
        "people", "always", "something", "together", "another", "important", "different",
        "following", "beautiful", "whatever", "journey", "kitchen", "mountain", "yesterday"};
    constexpr int kCount = static_cast<int>(sizeof kWords / sizeof kWords[0]);
    InputRandom rng(seed);
    std::string text;
    text.reserve(size + 32);
    bool startSentence = true;
    std::size_t lineLength = 0;
    while (text.size() < size) {
        // Squaring a uniform pick favours the common words at the front of the list.
        const int u = rng.Below(1000);
        std::string word = kWords[u * u / 1000 * kCount / 1000];
        if (startSentence) word[0] = static_cast<char>(word[0] - 'a' + 'A');
        startSentence = false;
        text += word;
        lineLength += word.size();
        const int mark = rng.Below(100);
        if (mark < 8) {
            text += '.';
            startSentence = true;
        } else if (mark < 14) {
            text += ',';
        }
        if (lineLength > 68) {
            text += "\r\n";
            lineLength = 0;
        } else {
            text += ' ';
            ++lineLength;
        }
    }
    text.resize(size);
    return text;
}

inline std::string RandomBytes(std::size_t size, std::uint64_t seed = 3) {
    InputRandom rng(seed);
    std::string out(size, '\0');
    for (auto& c : out) c = static_cast<char>(rng.Next() >> 56);
    return out;
}

}  // namespace skin::bench
