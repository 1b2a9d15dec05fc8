#include "plugin/actions/place_action.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/host/alerts.h"
#include "plugin/host/suites.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record_index.h"

namespace {

constexpr uint32_t kTransformEverything = 127;
constexpr double kPi = 3.141593;

double ReadReal(ParametersHandle parameters, uint32_t key, double missing) {
    double value = 0;
    if (!parameters) return missing; // played without any
    if (ActionManagerSuite().GetRealParameter(parameters, key, &value) != kHostNoError) return missing;
    return std::isfinite(value) ? value : missing;
}

PlaceSize ReadPlace(ParametersHandle parameters) {
    return {.x = ReadReal(parameters, kPlaceX, 0),
            .y = ReadReal(parameters, kPlaceY, 0),
            .width = ReadReal(parameters, kPlaceWidth, 0),
            .height = ReadReal(parameters, kPlaceHeight, 0),
            .angle = ReadReal(parameters, kPlaceAngle, 0)};
}

bool IsMeasure(double value) {
    return std::isfinite(value) && value != 0;
}

/// `wanted` over `side`; 0 if the side has no extent.
double FactorOf(double wanted, double side) {
    if (!IsMeasure(side)) return 0;
    return IsMeasure(wanted) ? wanted / side : 1;
}

/// The members of the current layer's root above `oldTop`, topmost first; false if the walk doesn't end
/// there, or the host breaks it off: what stood there before must not be taken for new.
bool CollectNewArt(ArtHandle root, ArtHandle oldTop, std::vector<ArtHandle>& art) {
    ArtHandle child = nullptr;
    HostError error = ArtSuite().GetFirstChild(root, &child);
    while (error == kHostNoError && child && child != oldTop) {
        art.push_back(child);
        error = ArtSuite().GetNextSibling(art.back(), &child);
    }
    return error == kHostNoError && child == oldTop;
}

void GroupAndTransform(ArtHandle root, const std::vector<ArtHandle>& art, const PlaceSize& place) {
    ArtHandle group = nullptr;
    if (ArtSuite().NewArt(kArtGroup, kPlaceInsideOnTop, root, &group) != kHostNoError) return;
    for (const ArtHandle each : art) ArtSuite().ReorderArt(each, kPlaceInsideAtBottom, group);
    HostRect bounds{};
    if (ArtSuite().GetArtBounds(group, &bounds) != kHostNoError) return;
    double lineScale = 1;
    const HostMatrix matrix = PlaceMatrix(bounds, place, &lineScale);
    TransformArtSuite().TransformArt(group, &matrix, lineScale, kTransformEverything);
}

void TellNothingSelected() {
    const bool japanese = globals->language == 0;
    ShowErrorAlert(
        moduleBasic,
        japanese ? "配置するレコードが選択されていません。" : "Placement record has not been selected.",
        kEncodingCp932);
}

int32_t SelectedRecordRow() {
    const HWND panel = PanelWindow();
    return panel ? GetSelectedRow(GetDlgItem(panel, kRecordList)) : -1;
}

} // namespace

HostMatrix PlaceMatrix(const HostRect& bounds, const PlaceSize& place, double* lineScale) {
    const bool turned = globals->rotationAngle == 90 || globals->rotationAngle == 270;
    const double width = bounds.right - bounds.left, height = bounds.top - bounds.bottom;
    double sx = FactorOf(place.width, turned ? height : width);
    double sy = FactorOf(place.height, turned ? width : height);
    if (sx == 0 && sy == 0) sx = sy = 1;
    if (sx == 0) sx = sy;
    if (sy == 0) sy = sx;
    if (globals->fixedAspect) sx = sy = std::min(sx, sy);
    *lineScale = (sx + sy) / 2;

    const AIRealMathSuite& math = RealMathSuite();
    HostMatrix matrix{};
    math.SetTranslationMatrix(&matrix, -(bounds.left + bounds.right) / 2, -(bounds.top + bounds.bottom) / 2);
    if (globals->rotationAngle != 0) math.ConcatRotation(&matrix, globals->rotationAngle / 180.0 * kPi);
    if (globals->reflectMode != 0) {
        const HostMatrix mirror{-1, 0, 0, 1, 0, 0};
        math.ConcatMatrix(&matrix, &mirror);
    }
    math.ConcatScale(&matrix, sx, sy);
    math.ConcatRotation(&matrix, place.angle);
    math.ConcatTranslation(&matrix, place.x, place.y);
    return matrix;
}

void PlaceFromAction(ParametersHandle parameters) {
    const PlaceSize place = ReadPlace(parameters);
    ViewHandle view = nullptr;
    if (DocumentViewSuite().GetCurrentView(&view) != kHostNoError || !view) {
        MessageBeep(static_cast<UINT>(-1));
        return;
    }
    const int32_t row = SelectedRecordRow();
    if (row < 0) {
        TellNothingSelected();
        return;
    }
    char group[kNameBytes];
    int32_t number = 0;
    if (!GetRecordOfRow(row, group, &number)) return;
    LayerHandle layer = nullptr;
    ArtHandle root = nullptr, oldTop = nullptr;
    if (LayerSuite().GetCurrentLayer(&layer) != kHostNoError ||
        ArtSuite().GetFirstArtOfLayer(layer, &root) != kHostNoError ||
        ArtSuite().GetFirstChild(root, &oldTop) != kHostNoError)
        return;
    globals->placePoint = {place.x, place.y};
    globals->trackState = 0;
    AidbLoadArt(group, number);
    std::vector<ArtHandle> art;
    if (CollectNewArt(root, oldTop, art) && !art.empty()) GroupAndTransform(root, art, place);
}
