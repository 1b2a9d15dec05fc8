#include "workbench/document/document.h"

#include <utility>

#include "workbench/document/document_tables.h"
#include "workbench/document/undo_history.h"

namespace workbench {

namespace {

void DeleteObject(HandleType type, void* object) {
    switch (type) {
        case HandleType::kArt:
            delete static_cast<Art*>(object);
            break;
        case HandleType::kGradient:
            delete static_cast<Gradient*>(object);
            break;
        case HandleType::kPattern:
            delete static_cast<Pattern*>(object);
            break;
        case HandleType::kCustomColor:
            delete static_cast<CustomColor*>(object);
            break;
        case HandleType::kArtStyle:
            delete static_cast<ArtStyle*>(object);
            break;
        default:
            break;
    }
}

} // namespace

Document::Document() : title("Untitled"), tables_(std::make_unique<Tables>()) {
    handle_ = reinterpret_cast<DocumentHandle>(tables_->handles.Add(HandleType::kDocument, this));
    swatchList_ = reinterpret_cast<SwatchListHandle>(tables_->handles.Add(HandleType::kSwatchList, this));
    tables_->Add<ViewHandle>(HandleType::kView, view_);
    view_.bounds = page;
    InsertLayer(0, "Layer 1");
}

Document::~Document() {
    tables_->handles.ForEach(DeleteObject);
}

// Layers

Layer* Document::Find(LayerHandle handle) {
    return tables_->Find<Layer>(HandleType::kLayer, handle);
}

Layer& Document::InsertLayer(size_t index, std::string layerTitle) {
    auto layer = std::make_unique<Layer>();
    layer->title = std::move(layerTitle);
    tables_->Add<LayerHandle>(HandleType::kLayer, *layer);
    layer->root = MakeArt(kArtGroup);
    layer->root->layer = layer->handle;
    if (!layers_.empty() && index <= currentLayer_) ++currentLayer_;
    return **layers_.insert(layers_.begin() + static_cast<std::ptrdiff_t>(index), std::move(layer));
}

void Document::RemoveLayer(size_t index) {
    Layer& layer = *layers_[index];
    Art* root = layer.root;
    root->layer = nullptr;
    DisposeArt(root);
    tables_->handles.Remove(reinterpret_cast<uintptr_t>(layer.handle));
    layers_.erase(layers_.begin() + static_cast<std::ptrdiff_t>(index));
    if (currentLayer_ > index || currentLayer_ == layers_.size()) --currentLayer_;
}

Layer& Document::CurrentLayer() {
    return *layers_[currentLayer_];
}

void Document::SetCurrentLayer(size_t index) {
    currentLayer_ = index;
}

void Document::KeepHistory() {
    if (!history_) history_ = std::make_unique<UndoHistory>(*this);
}

// Paint

Gradient* Document::Find(GradientHandle handle) {
    return tables_->Find<Gradient>(HandleType::kGradient, handle);
}

const Gradient* Document::Find(GradientHandle handle) const {
    return tables_->Find<const Gradient>(HandleType::kGradient, handle);
}

Gradient& Document::NewGradient(std::string name) {
    auto* gradient = new Gradient;
    tables_->Add<GradientHandle>(HandleType::kGradient, *gradient);
    gradient->name = std::move(name);
    gradient->stops = {{50, 0, GrayColor(0), 1}, {50, 100, GrayColor(1), 1}};
    return *gradient;
}

Pattern* Document::Find(PatternHandle handle) {
    return tables_->Find<Pattern>(HandleType::kPattern, handle);
}

const Pattern* Document::Find(PatternHandle handle) const {
    return tables_->Find<const Pattern>(HandleType::kPattern, handle);
}

Pattern& Document::NewPattern(std::string name) {
    auto* pattern = new Pattern;
    tables_->Add<PatternHandle>(HandleType::kPattern, *pattern);
    pattern->name = std::move(name);
    return *pattern;
}

CustomColor* Document::Find(CustomColorHandle handle) {
    return tables_->Find<CustomColor>(HandleType::kCustomColor, handle);
}

const CustomColor* Document::Find(CustomColorHandle handle) const {
    return tables_->Find<const CustomColor>(HandleType::kCustomColor, handle);
}

CustomColor* Document::FindCustomColor(std::string_view name) {
    const auto found = tables_->customColors.find(name);
    return found == tables_->customColors.end() ? nullptr : found->second;
}

CustomColor& Document::NewCustomColor(std::string name, const HostCustomColor& definition) {
    std::string unique = name;
    for (int number = 1; unique.empty() || FindCustomColor(unique); ++number) {
        unique = name + std::to_string(number);
    }
    auto* color = new CustomColor;
    tables_->Add<CustomColorHandle>(HandleType::kCustomColor, *color);
    color->name = std::move(unique);
    color->definition = definition;
    tables_->customColors.emplace(color->name, color);
    return *color;
}

ArtStyle* Document::Find(ArtStyleHandle handle) {
    return tables_->Find<ArtStyle>(HandleType::kArtStyle, handle);
}

const ArtStyle* Document::Find(ArtStyleHandle handle) const {
    return tables_->Find<const ArtStyle>(HandleType::kArtStyle, handle);
}

ArtStyle& Document::NewArtStyle(const HostPathStyle& paint) {
    auto* style = new ArtStyle;
    tables_->Add<ArtStyleHandle>(HandleType::kArtStyle, *style);
    style->paint = paint;
    return *style;
}

bool Document::Knows(const HostColor& color) const {
    switch (color.kind) {
        case kColorGray:
        case kColorFour:
        case kColorThree:
            return true;
        case kColorPattern:
            return Find(color.u.pattern.pattern) != nullptr;
        case kColorCustom:
            return Find(color.u.custom.color) != nullptr;
        case kColorGradient:
            return Find(color.u.gradient.gradient) != nullptr;
        default:
            return false;
    }
}

// Swatches

Swatch* Document::Find(SwatchHandle handle) {
    return tables_->Find<Swatch>(HandleType::kSwatch, handle);
}

Swatch& Document::InsertSwatch(size_t index) {
    auto swatch = std::make_unique<Swatch>();
    tables_->Add<SwatchHandle>(HandleType::kSwatch, *swatch);
    swatch->color = GrayColor(0);
    return **swatches_.insert(swatches_.begin() + static_cast<std::ptrdiff_t>(index), std::move(swatch));
}

// Colours and styles

HostPathStyle DefaultPathStyle() {
    HostPathStyle style{};
    style.fill = GrayColor(0);
    style.strokePaint = 1;
    style.stroke = GrayColor(1);
    style.lineWidth = 1;
    style.miterLimit = 10;
    style.resolution = 800;
    return style;
}

HostColor GrayColor(double ink) {
    HostColor color{};
    color.kind = kColorGray;
    color.u.gray.gray = ink;
    return color;
}

HostColor ThreeColor(double red, double green, double blue) {
    HostColor color{};
    color.kind = kColorThree;
    color.u.three = {red, green, blue};
    return color;
}

HostColor FourColor(double cyan, double magenta, double yellow, double black) {
    HostColor color{};
    color.kind = kColorFour;
    color.u.four = {cyan, magenta, yellow, black};
    return color;
}

} // namespace workbench
