/// Records made by hand, object by object, and what becomes of them in the stand-in host's document.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/load_art.h"
#include "tests/support/beeps.h"
#include "tests/support/plugin_fixture.h"

/// A stored real.
Fixed Stored(double value);

/// The art of a tree in one line, topmost first: `p7` is a path of line width 7, `g(...)` a group, `c(...)` a
/// compound path, `x(...)` plug-in art; `!` behind a group's letter says that it is clipped.
std::string Describe(const workbench::Art& art);

/// The same with the art of a path's pattern behind it in brackets, and tags as `#name=value` behind each.
std::string DescribeAll(workbench::Document& document, const workbench::Art& art);

/// The tags of art as "name=value" lines, in their order; other types than "string" as "name:type=value".
std::vector<std::string> TagsOf(const workbench::Art& art);

class LoadFixture : public PluginFixture {
protected:
    void SetUp() override;

    /// Starts an empty record of that size; a fixture begins with one of 100 by 50.
    void NewRecordOf(double width, double height);

    void Note(const std::string& text);

    /// Appends a path that is stroked with `id` points and not filled, and looks like a triangle unless
    /// `anchors` says otherwise.  The pointer stands until the next append.
    AidbPathObject* Path(int id, const std::vector<HostPoint>& anchors = {{0, 0}, {10, 0}, {0, 10}});

    /// The path with a fill of pattern `number`.
    AidbPathObject* PatternPath(int id, uint32_t number);

    /// Stores the record made so far as the only one of its group, and begins an empty one.
    void Store();

    /// Stores if that is still to be done, and loads the record onto `placePoint`.
    HostError Load();

    /// Loads the record as it is and then, each time into an empty document that `prepare` may fill, with
    /// each of those calls refused in turn, or all from it on; `check` sees what a load gave.  The test fails
    /// if the host finds a fault or anything isn't given back.  The number of calls.
    uint64_t RefuseEachCall(
        const std::function<void(HostError)>& check, bool allBehind = false,
        const std::function<void()>& prepare = [] {});

    /// Members of the current layer, described and joined with blanks.
    std::string Page();
    const workbench::Art& Root() { return *document().CurrentLayer().root; }
    const workbench::Art& First() { return *Root().firstChild; }

    /// Expects that many beeps since `before`, where the platform tells.
    static void ExpectBeeps(std::optional<unsigned> before, unsigned count);

    /// Makes art in the document, as a user would have it there already.
    workbench::Art* AddArt(int32_t kind, workbench::Art* parent);

private:
    bool stored_ = false;
};
