#include "plugin/host/suites.h"

#include "plugin/host/suite_slots.h"

#define DEFINE_ACCESSOR(suite)                                         \
    const AI##suite##Suite& suite##Suite() {                           \
        return *static_cast<const AI##suite##Suite*>(AI##suite##Slot); \
    }

DEFINE_ACCESSOR(Art)
DEFINE_ACCESSOR(Group)
DEFINE_ACCESSOR(Path)
DEFINE_ACCESSOR(BlendStyle)
DEFINE_ACCESSOR(ArtStyle)
DEFINE_ACCESSOR(PluginGroup)
DEFINE_ACCESSOR(Placed)
DEFINE_ACCESSOR(Raster)
DEFINE_ACCESSOR(Mesh)
DEFINE_ACCESSOR(MeshVertex)
DEFINE_ACCESSOR(MeshSegment)
DEFINE_ACCESSOR(TransformArt)
DEFINE_ACCESSOR(Tag)
DEFINE_ACCESSOR(PathStyle)
DEFINE_ACCESSOR(Gradient)
DEFINE_ACCESSOR(Pattern)
DEFINE_ACCESSOR(CustomColor)
DEFINE_ACCESSOR(SwatchList)
DEFINE_ACCESSOR(Layer)
DEFINE_ACCESSOR(DocumentView)
DEFINE_ACCESSOR(Undo)
DEFINE_ACCESSOR(HardSoft)
DEFINE_ACCESSOR(DrawArt)
DEFINE_ACCESSOR(RealMath)
DEFINE_ACCESSOR(User)
DEFINE_ACCESSOR(UnicodeString)
DEFINE_ACCESSOR(FilePath)
DEFINE_ACCESSOR(Plugin)
DEFINE_ACCESSOR(Menu)
DEFINE_ACCESSOR(Timer)
DEFINE_ACCESSOR(Notifier)
DEFINE_ACCESSOR(Panel)
DEFINE_ACCESSOR(PanelFlyoutMenu)
DEFINE_ACCESSOR(UserInterfaceTheme)
DEFINE_ACCESSOR(Context)
DEFINE_ACCESSOR(ActionManager)
DEFINE_ACCESSOR(TextFrame)
DEFINE_ACCESSOR(Font)
DEFINE_ACCESSOR(ATEPaint)
DEFINE_ACCESSOR(ATETextUtil)

const SPAccessSuite& AccessSuite() {
    return *static_cast<const SPAccessSuite*>(SPAccessSlot);
}

#define DEFINE_ENGINE_ACCESSOR(suite)                                    \
    const ATE##suite##Suite& Engine##suite##Suite() {                    \
        return *static_cast<const ATE##suite##Suite*>(ATE##suite##Slot); \
    }

DEFINE_ENGINE_ACCESSOR(TextFrame)
DEFINE_ENGINE_ACCESSOR(TextRange)
DEFINE_ENGINE_ACCESSOR(Story)
DEFINE_ENGINE_ACCESSOR(CharFeatures)
DEFINE_ENGINE_ACCESSOR(ParaFeatures)
DEFINE_ENGINE_ACCESSOR(Kinsoku)
DEFINE_ENGINE_ACCESSOR(KinsokuSet)
DEFINE_ENGINE_ACCESSOR(ApplicationTextResources)
DEFINE_ENGINE_ACCESSOR(ApplicationPaint)
DEFINE_ENGINE_ACCESSOR(Font)
DEFINE_ENGINE_ACCESSOR(ArrayReal)
