// The system's own cursors.
#include <array>
#include <string_view>

#include "win32/resources/module_images.h"

namespace {

constexpr int kSide = 32;

// '#' black, '.' white, 'x' inverts what is below.
constexpr std::string_view kArrow[] = {
    "#",         "##",        "#.#",        "#..#",        "#...#",        "#....#",   "#.....#",
    "#......#",  "#.......#", "#........#", "#.........#", "#......#####", "#...#..#", "#..##..#",
    "#.#  #..#", "##   #..#", "#     #..#", "      #..#",  "       ##",
};
constexpr std::string_view kBeam[] = {
    "xxx xxx", "   x", "   x", "   x", "   x", "   x", "   x", "   x",
    "   x",    "   x", "   x", "   x", "   x", "   x", "   x", "xxx xxx",
};
constexpr std::string_view kLeftAndRight[] = {
    "    ##           ##",    "   #.#           #.#",    "  #..#           #..#",
    " #...#############...#", "#.....................#", " #...#############...#",
    "  #..#           #..#",  "   #.#           #.#",    "    ##           ##",
};

struct Drawing {
    uint16_t number;
    POINT hotSpot;
    std::span<const std::string_view> rows;
    HCURSOR cursor = nullptr;
};

IconPicture PictureOf(const Drawing& drawing) {
    IconPicture picture;
    picture.width = picture.height = kSide;
    picture.hotSpot = drawing.hotSpot;
    picture.pixels.assign(size_t{kSide} * kSide, 0);
    picture.keepsBelow.assign(size_t{kSide} * kSide, 1);
    size_t first = 0;
    for (const std::string_view row : drawing.rows) {
        for (size_t x = 0; x < row.size(); ++x) {
            if (row[x] == ' ') continue;
            if (row[x] != '#') picture.pixels[first + x] = 0xFFFFFF;
            if (row[x] != 'x') picture.keepsBelow[first + x] = 0;
        }
        first += kSide;
    }
    return picture;
}

} // namespace

HCURSOR SystemCursor(uint16_t number) {
    static std::array<Drawing, 3> drawings = {{
        {32512, {0, 0}, kArrow},
        {32513, {3, 8}, kBeam},
        {32644, {11, 4}, kLeftAndRight},
    }};
    for (Drawing& drawing : drawings) {
        if (drawing.number != number) continue;
        if (drawing.cursor == nullptr) drawing.cursor = AddIcon(PictureOf(drawing));
        return drawing.cursor;
    }
    return nullptr;
}
