/// The stand-in host's document: layers, art, paint, swatches, views, undo texts.
///
/// It knows nothing of suites or files.  All texts are UTF-8 but for tags, which are bytes.  Every object
/// has a handle of its own that is never used again after the object is gone, so that a stale handle is
/// recognised; no handle's value lies below 0x10000.  Operations that can be refused return a host error
/// and change nothing on failure.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/document/art.h"

namespace workbench {

class UndoHistory;

struct Layer {
    LayerHandle handle = nullptr;
    std::string title;
    bool visible = true;
    bool locked = false;
    Art* root = nullptr; ///< the layer's group, always there
};

struct Gradient {
    GradientHandle handle = nullptr;
    std::string name;
    int32_t type = kGradientLinear;
    std::vector<HostGradientStop> stops; ///< by location, at least two
};

/// The art's bounds are the tile.
struct Pattern {
    PatternHandle handle = nullptr;
    std::string name;
    Art* art = nullptr; ///< a group out of the tree; null: nothing yet
};

struct CustomColor {
    CustomColorHandle handle = nullptr;
    std::string name;
    HostCustomColor definition{};
};

struct ArtStyle {
    ArtStyleHandle handle = nullptr;
    HostPathStyle paint{};
};

struct Swatch {
    SwatchHandle handle = nullptr;
    std::string name;
    HostColor color{};
};

struct View {
    ViewHandle handle = nullptr;
    HostRect bounds{};
    double zoom = 1.0; ///< pixels for each point
};

class Document {
public:
    Document(); ///< one layer, "Layer 1", which is current
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    DocumentHandle handle() const { return handle_; }
    std::string title;   ///< file name or "Untitled"
    std::string subject; ///< kind, when the file's metadata has one
    std::string description;
    HostRect page{0, 792, 612, 0}; ///< points
    std::string undoText, redoText;
    HostPoint hardOrigin{0, 0}; ///< what the page point (0, 0) is in hard coordinates

    // Layers; number 0 is the topmost.
    size_t LayerCount() const { return layers_.size(); }
    Layer& LayerAt(size_t index) { return *layers_[index]; }
    const Layer& LayerAt(size_t index) const { return *layers_[index]; }
    Layer* Find(LayerHandle handle);
    Layer& InsertLayer(size_t index, std::string title);
    void RemoveLayer(size_t index); ///< with all that is on it; never the last one
    Layer& CurrentLayer();
    void SetCurrentLayer(size_t index);

    // Art.
    Art* Find(ArtHandle handle); ///< null if stale
    const Art* Find(ArtHandle handle) const;

    /// By the contract's paint orders.  kHostBadPlace: `prep` is no group (or a compound path for other than
    /// paths and groups), lies out of every tree, or its layer is locked or hidden; for kPlaceAboveAll, the
    /// current layer is.  kHostBadParameter: no such kind or paint order.
    HostError NewArt(int32_t kind, int32_t paintOrder, Art* prep, Art** art);

    /// New art at the bottom of a container, or free-standing (out of every tree, its handle alive until the
    /// document is gone or DisposeArt) if `parent` is null: for readers that build from the bottom up or the
    /// top down as they like.
    Art* AppendArt(int32_t kind, Art* parent);
    Art* PrependArt(int32_t kind, Art* parent);

    /// Hangs free-standing art into a container, at the bottom or on top.
    void AdoptArt(Art& art, Art& parent, bool onTop = false);

    /// Takes art that is no layer's root out of its container, free-standing.
    void DetachArt(Art& art);

    /// Also what hangs on it out of the tree: styled art, a text's path.  kHostBadPlace for a layer's root.
    HostError DisposeArt(Art* art);

    /// Free-standing art may be moved into a tree.  kHostBadPlace as for NewArt, for a layer's root, and for
    /// a place within `art` or beside it.
    HostError ReorderArt(Art* art, int32_t paintOrder, Art* prep);

    /// True if neither the layer nor its lock stands against changes at this place.
    bool CanChange(const Art& art) { return CanChange(LayerOf(art)); }

    /// Moves `edit`, a group, into the plug-in art; what was there before is disposed of.  kHostBadPlace if
    /// the plug-in art lies within it.
    HostError SetEditArt(Art& pluginArt, Art& edit);

    Art* CopyArt(const Art& art); ///< a free-standing deep copy with tags and paint, nothing selected
    /// The same of several at once, none within another: text frames that are linked stay so.
    std::vector<Art*> CopyArts(const std::vector<const Art*>& arts);
    Layer* LayerOf(const Art& art); ///< null for art out of the tree; walks up to the root
    static bool CanChange(const Layer* layer) { return layer && layer->visible && !layer->locked; }

    /// Sets or clears the flag of `art` and of everything in it.  A container counts as selected when all
    /// that is in it is selected, so the flags of its parents follow.
    void Select(Art& art, bool selected);
    void SelectAll();
    void SelectNone();

    /// By control points, without line widths; false, and `bounds` untouched, if the art has no extent.
    /// Only the handles of curves that are there count: those at the ends of an open path don't.  Pattern art
    /// and free-standing art are measured like any other; styled art doesn't count.
    bool Bounds(const Art& art, HostRect* bounds) const;

    /// Maps art with all its members, and, if `withPaint`, the gradients and patterns that they are painted
    /// with; line widths and dashes grow by `lineScale`.  Of text in a chain, the paint of what the frame
    /// shows goes along.
    void Transform(Art& art, const HostMatrix& matrix, double lineScale, bool withPaint = true);

    // Paint.
    Gradient* Find(GradientHandle handle);
    const Gradient* Find(GradientHandle handle) const;
    Gradient& NewGradient(std::string name); ///< linear, white to black
    Pattern* Find(PatternHandle handle);
    const Pattern* Find(PatternHandle handle) const;
    Pattern& NewPattern(std::string name);
    CustomColor* Find(CustomColorHandle handle);
    const CustomColor* Find(CustomColorHandle handle) const;
    CustomColor* FindCustomColor(std::string_view name);

    /// A name that is taken or empty gets the lowest number from 1 behind it that makes it unique.
    CustomColor& NewCustomColor(std::string name, const HostCustomColor& definition);
    ArtStyle* Find(ArtStyleHandle handle);
    const ArtStyle* Find(ArtStyleHandle handle) const;
    ArtStyle& NewArtStyle(const HostPathStyle& paint);

    /// True if every handle in the colour is one of this document's.
    bool Knows(const HostColor& color) const;

    // Swatches.
    size_t SwatchCount() const { return swatches_.size(); }
    Swatch& SwatchAt(size_t index) { return *swatches_[index]; }
    const Swatch& SwatchAt(size_t index) const { return *swatches_[index]; }
    Swatch* Find(SwatchHandle handle);
    Swatch& InsertSwatch(size_t index);
    SwatchListHandle swatchList() const { return swatchList_; }

    View& view() { return view_; }
    const View& view() const { return view_; }

    /// Null unless the steps of this document are kept.
    UndoHistory* history() const { return history_.get(); }
    void KeepHistory();

private:
    struct Tables;
    Art* MakeArt(int32_t kind);
    HostError PlaceFor(int32_t kind, int32_t paintOrder, Art* prep, Art** parent, Art** above);
    std::unique_ptr<Tables> tables_;
    std::vector<std::unique_ptr<Layer>> layers_;
    std::vector<std::unique_ptr<Swatch>> swatches_;
    size_t currentLayer_ = 0;
    View view_;
    DocumentHandle handle_ = nullptr;
    SwatchListHandle swatchList_ = nullptr;
    std::unique_ptr<UndoHistory> history_;
};

/// The paint of new art: black stroke of one point, no fill.
HostPathStyle DefaultPathStyle();

HostColor GrayColor(double ink);
HostColor ThreeColor(double red, double green, double blue);
HostColor FourColor(double cyan, double magenta, double yellow, double black);

/// Visits `root` and all that is in it, parents before members, topmost first.  Nesting costs no stack.  The
/// visitor may change values, not the tree.
template <typename Visitor>
void ForEachArt(const Art& root, Visitor&& visit) {
    const Art* art = &root;
    for (;;) {
        visit(*art);
        if (art->firstChild) {
            art = art->firstChild;
            continue;
        }
        while (art != &root && !art->below) art = art->parent;
        if (art == &root) return;
        art = art->below;
    }
}

} // namespace workbench
