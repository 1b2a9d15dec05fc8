#include "app/format_losses.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "app/format_text_losses.h"

using workbench::Art;
using workbench::Document;

namespace {

constexpr size_t kStopsKept = 32;
constexpr size_t kAnchorsKept = 32767;

class Losses {
public:
    Losses(Document& document, const RecordFrame& frame) : document_(document), frame_(frame) {}

    std::map<std::string, int> Apply() {
        for (size_t i = 0; i < document_.LayerCount(); ++i) {
            workbench::Layer& layer = document_.LayerAt(i);
            if (!layer.visible) ++counts_["hidden layer"];
            layer.visible = true;
            if (i > 0) ++counts_["layer"];
            // A layer's own group is never part of a record, so its blending isn't either.
            if (!(layer.root->blend == workbench::Blend{})) ++counts_["layer blending"];
            layer.root->blend = {};
            layer.root->hidden = false;
            ApplyToMembers(*layer.root, frame_.origin);
        }
        return counts_;
    }

private:
    /// Members are hung in anew one by one, so that what stands for one takes its place.
    void ApplyToMembers(Art& container, const HostPoint& origin) {
        std::vector<Art*> members;
        for (Art* member = container.firstChild; member; member = member->below) members.push_back(member);
        for (Art* member : members) {
            const bool outer = inProduced_;
            Art* stored = StandInOf(*member);
            if (stored) document_.AdoptArt(*stored, container);
            if (stored != member) document_.DisposeArt(member);
            if (stored && Kept(*stored)) {
                ApplyTo(*stored, origin);
            } else if (stored) {
                document_.DisposeArt(stored);
            }
            inProduced_ = outer;
        }
    }

    /// What a record has of art that other art shows: that other art, and of it no pictures.  Null for none.
    Art* StandInOf(Art& art) {
        if (const auto* plugin = std::get_if<workbench::PluginArtData>(&art.data)) {
            ++counts_["plug-in art"];
            inProduced_ = true;
            Art* result = document_.Find(plugin->result);
            return result ? StandInOf(*document_.CopyArt(*result)) : nullptr;
        }
        Art* drawn = art.styledArt == art.handle ? nullptr : document_.Find(art.styledArt);
        if (!drawn) return &art;
        ++counts_["art style"];
        if (art.kind != kArtPath || art.blend.opacity != 1 || art.path()->guide) {
            art.styledArt = nullptr;
            document_.DisposeArt(drawn);
            return &art;
        }
        inProduced_ = true;
        Art* stored = StandInOf(*document_.CopyArt(*drawn));
        // The path's tags come behind those of what is drawn, and in a load the last ones read count.
        if (stored) KeepStringTags(*stored);
        if (stored && stored->tags.empty()) stored->tags = art.tags;
        return stored;
    }

    bool Kept(const Art& art) {
        if (art.kind == kArtGroup || art.kind == kArtCompoundPath) return true;
        if (art.kind == kArtPlaced) {
            if (inPattern_ || inProduced_) ++counts_["linked picture in a pattern"];
            std::error_code ignored;
            const auto& file = std::get<workbench::PlacedData>(art.data).file;
            const bool there = std::filesystem::is_regular_file(file, ignored);
            if (!inPattern_ && !inProduced_ && !there) ++counts_["missing linked picture"];
            return !inPattern_ && !inProduced_ && there;
        }
        if (art.kind == kArtRaster) return RasterKept(std::get<workbench::RasterData>(art.data));
        if (art.kind == kArtMesh || art.kind == kArtTextFrame) return true;
        const workbench::PathData* path = art.path();
        if (!path) {
            ++counts_["art of another kind"];
            return false;
        }
        if (path->segments.empty()) ++counts_["empty path"];
        return !path->guide && !path->segments.empty();
    }

    void ApplyTo(Art& art, const HostPoint& origin) {
        if (art.hidden) ++counts_["hidden art"];
        art.hidden = false;
        if (art.kind == kArtPlaced) return ApplyToPlaced(art);
        if (art.kind == kArtRaster) return ApplyToRaster(art);
        if (art.kind == kArtMesh) return ApplyToMesh(art, origin);
        if (art.kind == kArtTextFrame) return ApplyToText(art);
        KeepStringTags(art);
        if (art.kind == kArtPath) return ApplyToPath(art, origin);
        ApplyToContainerBlend(art);
        ApplyToMembers(art, origin);
    }

    void ApplyToContainerBlend(Art& art) {
        workbench::Blend kept;
        if (art.kind == kArtGroup && art.blend.opacity < 0.99 && art.blend.opacity >= 0) {
            const auto opacity = static_cast<float>(art.blend.opacity);
            kept.opacity = static_cast<int>(static_cast<double>(opacity) * 100 + 0.5) / 100.0;
        }
        if (std::abs(kept.opacity - art.blend.opacity) > 1e-9)
            ++counts_[art.kind == kArtGroup ? "group opacity in parts of a percent"
                                            : "compound path opacity"];
        if (art.blend.mode != kept.mode) ++counts_["group blending mode"];
        if (art.blend.isolated != kept.isolated) ++counts_["group isolation"];
        if (art.blend.knockout != kept.knockout || art.blend.alphaIsShape != kept.alphaIsShape)
            ++counts_["group knockout"];
        art.blend = kept;
    }

    void ApplyToPlaced(Art& art) {
        if (!(art.blend == workbench::Blend{})) ++counts_["blending of a linked picture"];
        art.blend = {};
        if (!art.tags.empty()) counts_["tag of a linked picture"] += static_cast<int>(art.tags.size());
        art.tags.clear();
    }

    void KeepStringTags(Art& art) {
        const auto lost =
            std::erase_if(art.tags, [](const workbench::Tag& tag) { return tag.type != "string"; });
        if (lost > 0) counts_["tag of another type"] += static_cast<int>(lost);
    }

    void ApplyToMesh(Art& art, const HostPoint& origin) {
        // A load moves a mesh with the drop also where a pattern's paths stay.
        if (inPattern_) ++counts_["mesh in a pattern"];
        if (!art.tags.empty()) counts_["tag of a mesh"] += static_cast<int>(art.tags.size());
        art.tags.clear();
        ForEachMeshPoint(std::get<workbench::MeshData>(art.data),
                         [&](HostPoint& point) { Clamp(&point, origin); });
    }

    void ApplyToText(Art& art) {
        // A load moves text with the drop also where a pattern's paths stay.
        if (inPattern_) ++counts_["text in a pattern"];
        if (!art.tags.empty()) counts_["tag of a text"] += static_cast<int>(art.tags.size());
        art.tags.clear();
        ApplyTextLosses(art, &counts_, [this](const HostPatternUse& use) { ApplyToPattern(use); });
    }

    bool RasterKept(const workbench::RasterData& raster) {
        const HostRasterRecord& record = raster.record;
        const bool fits = std::min({record.left, record.top, record.right, record.bottom}) >= INT16_MIN &&
                          std::max({record.left, record.top, record.right, record.bottom}) <= INT16_MAX;
        if (inPattern_ || inProduced_) ++counts_["image in a pattern"];
        if (!inPattern_ && !inProduced_ && !fits) ++counts_["image beyond 32767 pixels"];
        return !inPattern_ && !inProduced_ && fits;
    }

    /// Of a style, a record keeps plain paint, and that of a colourized image alone.
    void ApplyToRaster(Art& art) {
        if (!art.tags.empty()) counts_["tag of an image"] += static_cast<int>(art.tags.size());
        art.tags.clear();
        workbench::ArtStyle* style = document_.Find(art.artStyle);
        if (!style) return;
        if (!std::get<workbench::RasterData>(art.data).Colorized()) {
            ++counts_["art style of an image"];
            art.artStyle = nullptr;
            return;
        }
        HostPathStyle paint = style->paint;
        for (const auto& [painted, color] :
             {std::pair(paint.fillPaint, &paint.fill), std::pair(paint.strokePaint, &paint.stroke)}) {
            if (!painted || (color->kind != kColorGradient && color->kind != kColorPattern)) continue;
            ++counts_["gradient or pattern of an image's style"];
            *color = workbench::GrayColor(0);
        }
        art.artStyle = document_.NewArtStyle(paint).handle;
    }

    void ApplyToPath(Art& art, const HostPoint& origin) {
        workbench::PathData& path = *art.path();
        if (path.segments.size() > kAnchorsKept) {
            counts_["anchor beyond 32767"] += static_cast<int>(path.segments.size() - kAnchorsKept);
            path.segments.resize(kAnchorsKept);
        }
        for (HostPathSegment& segment : path.segments) {
            for (HostPoint* point : {&segment.anchor, &segment.in, &segment.out}) Clamp(point, origin);
        }
        HostPathStyle& style = path.style;
        if (style.fillPaint) {
            if (style.fill.kind == kColorGradient) ApplyToGradient(style.fill.u.gradient);
            if (style.fill.kind == kColorPattern) ApplyToPattern(style.fill.u.pattern);
        }
        if (style.strokePaint) {
            if (style.stroke.kind == kColorPattern) ApplyToPattern(style.stroke.u.pattern);
            if (style.stroke.kind == kColorGradient) {
                ++counts_["gradient on a stroke"];
                style.stroke = workbench::GrayColor(0);
            }
        }
        ClampNumber(&style.lineWidth);
        ClampNumber(&style.miterLimit);
        ClampNumber(&style.dash.offset);
        for (double& length : style.dash.lengths) ClampNumber(&length);
    }

    void Clamp(HostPoint* point, const HostPoint& origin) {
        double x = point->x - origin.x, y = point->y - origin.y;
        if (std::abs(x) < kLargestFixed && std::abs(y) < kLargestFixed) return;
        ClampNumber(&x);
        ClampNumber(&y);
        *point = {origin.x + x, origin.y + y};
    }

    void ClampNumber(double* number) {
        if (std::abs(*number) < kLargestFixed) return;
        ++counts_["number beyond Fixed"];
        *number = std::isnan(*number) ? 0 : std::clamp(*number, -kLargestFixed, kLargestFixed);
    }

    void ApplyToGradient(HostGradientUse& use) {
        if (inPattern_) {
            // A load moves gradients with the drop also where a pattern's paths stay.
            ++counts_["gradient in a pattern"];
            MoveGradient(use, frame_.origin);
        }
        workbench::Gradient* gradient = document_.Find(use.gradient);
        if (!gradient || !gradients_.insert(use.gradient).second) return;
        auto& stops = gradient->stops;
        std::erase_if(stops, [&](const HostGradientStop& stop) {
            const bool plain = stop.color.kind != kColorPattern && stop.color.kind != kColorGradient;
            if (!plain) ++counts_["gradient stop of another colour"];
            return !plain;
        });
        if (stops.size() > kStopsKept) {
            counts_["gradient stop beyond 32"] += static_cast<int>(stops.size() - kStopsKept);
            stops.resize(kStopsKept);
        }
        for (HostGradientStop& stop : stops) {
            if (stop.opacity == 1) continue;
            ++counts_["stop opacity"];
            stop.opacity = 1;
        }
    }

    static void MoveGradient(HostGradientUse& use, const HostPoint& offset) {
        const HostMatrix& m = use.matrix;
        const double determinant = m.a * m.d - m.b * m.c;
        if (determinant == 0) return;
        use.origin.x += (m.d * offset.x - m.c * offset.y) / determinant;
        use.origin.y += (m.a * offset.y - m.b * offset.x) / determinant;
    }

    /// Of a pattern's own group only the members are kept.
    void DropOwnGroup(Art& group) {
        if (group.group() && group.group()->clipped) ++counts_["clip of a pattern's own group"];
        if (group.group()) group.group()->clipped = false;
        if (!(group.blend == workbench::Blend{})) ++counts_["blending of a pattern's own group"];
        group.blend = {};
    }

    void ApplyToPattern(const HostPatternUse& use) {
        workbench::Pattern* pattern = document_.Find(use.pattern);
        if (!pattern || !pattern->art || !patterns_.insert(use.pattern).second) return;
        HostRect bounds{};
        document_.Bounds(*pattern->art, &bounds);
        const bool outer = inPattern_;
        inPattern_ = true;
        DropOwnGroup(*pattern->art);
        ApplyToMembers(*pattern->art, {bounds.left, bounds.bottom});
        inPattern_ = outer;
    }

    Document& document_;
    const RecordFrame& frame_;
    std::map<std::string, int> counts_;
    std::set<GradientHandle> gradients_;
    std::set<PatternHandle> patterns_;
    bool inPattern_ = false;
    bool inProduced_ = false; ///< in what a style or a plug-in drew
};

} // namespace

std::map<std::string, int> ApplyFormatLosses(Document& document, const RecordFrame& frame) {
    return Losses(document, frame).Apply();
}
