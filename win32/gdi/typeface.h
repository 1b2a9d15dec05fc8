/// A face of letters at a size, drawn once for each character and kept.
///
/// Widths are whole pixels and belong to the characters alone: a text is as wide as its characters are
/// together, so what is measured and what is drawn agree wherever a text is cut.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// What makes two faces the same.
struct TypefaceKey {
    std::string face; ///< cp932
    int height = 0;   ///< pixels: negative of the letters, positive of a line, 0 the system's choice
    int weight = 0;
    bool italic = false;
    bool operator==(const TypefaceKey&) const = default;
};

/// One character: how far it leads, and how much ink covers each pixel (0 to 255), row by row.
struct Glyph {
    int advance = 0;
    int left = 0, top = 0; ///< of the ink, from the pen's place at the top of the line
    int width = 0, height = 0;
    std::vector<uint8_t> coverage;
};

struct TypefaceFont; ///< the library's side

class Typeface {
public:
    explicit Typeface(const TypefaceKey& key);
    ~Typeface();
    Typeface(const Typeface&) = delete;
    Typeface& operator=(const Typeface&) = delete;

    const TypefaceKey& Key() const { return key_; }
    int Ascent() const { return ascent_; }
    int Descent() const { return descent_; }
    int Height() const { return ascent_ + descent_; }
    int EmHeight() const { return emHeight_; }
    int AverageWidth() { return GlyphOf('x').advance; }

    /// The glyph of a unit of cp932 (win32/codepage_932.h), which stays as long as the typeface.
    const Glyph& GlyphOf(uint16_t unit);

private:
    TypefaceKey key_;
    std::unique_ptr<TypefaceFont> font_;
    int ascent_ = 0, descent_ = 0, emHeight_ = 0;
    std::unordered_map<uint16_t, Glyph> glyphs_;
};

/// The typeface for a key, shared with all who ask for the same one.
std::shared_ptr<Typeface> FindTypeface(const TypefaceKey& key);
