// Paint, lines and groups: what paths are made of.

#include "app/sample_cells.h"

using workbench::Art;
using workbench::Document;

namespace sample {

namespace {

HostColor Custom(Document& document, const char* name, const HostCustomColor& definition, double tint) {
    const workbench::CustomColor* known = document.FindCustomColor(name);
    HostColor color{};
    color.kind = kColorCustom;
    color.u.custom = {known ? known->handle : document.NewCustomColor(name, definition).handle, tint};
    return color;
}

void AddColorModels(Document& document, Art* layer) {
    const HostRect cell = Cell(0, 0);
    SetFill(AddRectangle(document, layer, Part(cell, 0, 0, 0.6, 0.6)), workbench::GrayColor(0.5));
    SetFill(AddRectangle(document, layer, Part(cell, 0.2, 0.2, 0.8, 0.8)),
            workbench::FourColor(0, 0.8, 0.9, 0.1));
    SetFill(AddRectangle(document, layer, Part(cell, 0.4, 0.4, 1, 1)), workbench::ThreeColor(0.1, 0.4, 0.9));
}

void AddCustomColors(Document& document, Art* layer) {
    const HostRect cell = Cell(1, 0);
    const HostCustomColor four{kCustomFour, {1, 0.5, 0, 0.25}, 0};
    const HostCustomColor three{kCustomThree, {0.9, 0.6, 0.1}, 0};
    const HostCustomColor lab{kCustomLab, {60, 40, -30}, 0};
    int column = 0;
    // "Indigo", "Yamabuki", "Lab violet": the second in Japanese.
    for (const double tint : {0.0, 0.25, 0.75}) {
        const double left = column++ / 3.0, right = left + 0.3;
        SetFill(AddRectangle(document, layer, Part(cell, left, 0.7, right, 1)),
                Custom(document, "Indigo, dark = 1", four, tint));
        SetFill(AddRectangle(document, layer, Part(cell, left, 0.35, right, 0.65)),
                Custom(document, "\xE5\xB1\xB1\xE5\x90\xB9", three, tint));
        SetFill(AddRectangle(document, layer, Part(cell, left, 0, right, 0.3)),
                Custom(document, "Lab violet", lab, tint));
    }
}

HostColor GradientColor(Document& document, int32_t type, const HostRect& cell) {
    workbench::Gradient& gradient = document.NewGradient(type == kGradientLinear ? "Dawn" : "Lamp");
    gradient.type = type;
    gradient.stops = {{30, 0, workbench::ThreeColor(1, 0.95, 0.5), 1},
                      {50, 45, workbench::FourColor(0, 0.7, 0.6, 0), 1},
                      {50, 100, workbench::GrayColor(0.85), type == kGradientLinear ? 1 : 0.4}};
    HostColor color{};
    color.kind = kColorGradient;
    const bool linear = type == kGradientLinear;
    const HostPoint middle{(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2};
    color.u.gradient = {gradient.handle,    linear ? HostPoint{cell.left, cell.bottom} : middle,
                        linear ? 40.0 : 0,  linear ? 110.0 : 55.0,
                        {1, 0, 0, 1, 0, 0}, linear ? 0 : 120.0,
                        linear ? 0 : 0.5};
    return color;
}

HostColor PatternColor(Document& document, Art& tile, const char* name, double turn) {
    workbench::Pattern& pattern = document.NewPattern(name);
    pattern.art = &tile;
    HostColor color{};
    color.kind = kColorPattern;
    color.u.pattern = {pattern.handle, 0, 0, {1, 1}, turn, 0, 0, 0, 0, {1, turn, -turn, 1, 5, 3}};
    return color;
}

Art& AddTile(Document& document, double side) {
    Art& tile = *document.AppendArt(kArtGroup, nullptr);
    AddRectangle(document, &tile, {0, side, side, 0});
    return tile;
}

void AddPatterns(Document& document, Art* layer) {
    Art& dots = AddTile(document, 4);
    SetFill(AddEllipse(document, &dots, {1, 3, 3, 1}), workbench::ThreeColor(0.8, 0.2, 0.3));
    Art& outer = AddTile(document, 24);
    Art& disc = AddEllipse(document, &outer, {2, 22, 22, 2});
    SetFill(disc, PatternColor(document, dots, "Dots", 0));
    SetStroke(disc, workbench::FourColor(1, 0.3, 0, 0.2), 1);
    Art& cloth = AddRectangle(document, layer, Cell(0, 1));
    SetFill(cloth, PatternColor(document, outer, "Discs of dots", 0.25));
    SetStroke(cloth, workbench::GrayColor(0.6), 0.5);
}

void AddLines(Document& document, Art* layer) {
    const HostRect cell = Cell(1, 1);
    for (int i = 0; i < 3; ++i) {
        const HostRect row = Part(cell, 0.1, 0.1 + 0.3 * i, 0.9, 0.3 + 0.3 * i);
        Art& line =
            AddLine(document, layer,
                    {{row.left, row.bottom}, {(row.left + row.right) / 2, row.top}, {row.right, row.bottom}});
        SetStroke(line, workbench::FourColor(0.2 * i, 0.4, 0.1, 0.5), 7);
        HostPathStyle& style = line.path()->style;
        style.lineCap = style.lineJoin = i;
        style.miterLimit = 4;
        style.strokeOverprint = i == 1;
        if (i < 2) continue;
        style.dash = {4, 2.5, {12, 9, 1, 9}};
    }
}

} // namespace

void AddPaint(Document& document, Art* layer) {
    AddColorModels(document, layer);
    AddCustomColors(document, layer);
    SetFill(AddRectangle(document, layer, Cell(2, 0)), GradientColor(document, kGradientLinear, Cell(2, 0)));
    SetFill(AddEllipse(document, layer, Cell(3, 0)), GradientColor(document, kGradientRadial, Cell(3, 0)));
    AddPatterns(document, layer);
    AddLines(document, layer);
}

namespace {

void AddCompoundPath(Document& document, Art* layer) {
    const HostRect cell = Cell(2, 1);
    Art* compound = document.PrependArt(kArtCompoundPath, layer);
    for (const double inset : {0.0, 0.15, 0.3}) {
        Art& ring = AddEllipse(document, compound, Part(cell, inset, inset, 1 - inset, 1 - inset));
        SetFill(ring, workbench::FourColor(0.6, 0, 0.7, 0));
        SetStroke(ring, workbench::GrayColor(1), 1);
        ring.path()->style.evenOdd = 1;
    }
}

void AddClippedGroup(Document& document, Art* layer) {
    const HostRect cell = Cell(3, 1);
    SetFill(AddRectangle(document, layer, Part(cell, 0, 0.3, 1, 0.7)), workbench::GrayColor(0.3));
    Art* glass = document.PrependArt(kArtGroup, layer);
    glass->name = "target";
    glass->tags = {{"shelf", "string", "A, 3 = left"}, {"weight", "real", "12.5"}};
    glass->blend.opacity = 0.75;
    Art* clipped = document.PrependArt(kArtGroup, glass);
    clipped->group()->clipped = true;
    for (int i = 0; i < 6; ++i) {
        Art& bar = AddRectangle(document, clipped, Part(cell, i / 6.0, 0, (i + 0.6) / 6.0, 1));
        SetFill(bar, workbench::ThreeColor(1 - 0.15 * i, 0.3, 0.15 * i));
        bar.blend = {workbench::kBlendMultiply, 0.9, 1, 1, 1};
        bar.tags = {{"bar", "string", std::to_string(i)}};
    }
    AddEllipse(document, clipped, cell).path()->style.clip = 1;
}

// A path whose style draws three lines where the path alone would have one.
void AddStyledArt(Document& document, Art* layer) {
    const HostRect cell = Cell(0, 2);
    Art& path = AddRectangle(document, layer, Part(cell, 0.1, 0.1, 0.9, 0.9));
    path.name = "style";
    SetStroke(path, workbench::FourColor(0, 1, 1, 0), 2);
    path.artStyle = document.NewArtStyle(path.path()->style).handle;
    Art* drawn = document.AppendArt(kArtGroup, nullptr);
    for (const double inset : {0.02, 0.1, 0.18}) {
        Art& line = AddRectangle(document, drawn, Part(cell, inset, inset, 1 - inset, 1 - inset));
        SetStroke(line, workbench::FourColor(0, 1, 1 - 4 * inset, 0), 3);
    }
    path.styledArt = drawn->handle;
}

void AddPluginArt(Document& document, Art* layer) {
    const HostRect cell = Cell(1, 2);
    Art* art = document.PrependArt(kArtPlugin, layer);
    Art* result = document.PrependArt(kArtGroup, art);
    Art* edit = document.PrependArt(kArtGroup, art);
    SetFill(AddRectangle(document, edit, Part(cell, 0.3, 0.3, 0.7, 0.7)), workbench::GrayColor(0.5));
    for (const double size : {0.5, 0.35, 0.2}) {
        SetFill(AddEllipse(document, result, Part(cell, 0.5 - size, 0.5 - size, 0.5 + size, 0.5 + size)),
                workbench::FourColor(size * 2, size, 1 - size, 0));
    }
    auto& plugin = std::get<workbench::PluginArtData>(art->data);
    plugin.groupName = "Inset Rings";
    plugin.major = 1;
    plugin.minor = 2;
    plugin.data = {3, 1, 4, 1, 5};
    plugin.edit = edit->handle;
    plugin.result = result->handle;
}

} // namespace

void AddGroups(Document& document, Art* layer) {
    AddCompoundPath(document, layer);
    AddClippedGroup(document, layer);
    AddStyledArt(document, layer);
    AddPluginArt(document, layer);
}

} // namespace sample
