/// A database of records that tell who they are, and what should be in it.
///
/// Every record has an identity that its name, its bodies and its linked file repeat, so that a lost,
/// doubled, damaged or exchanged one is seen wherever it is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"

struct ModelRecord {
    std::string id;
    std::string edition; ///< the kind, which an in-place rewrite changes
    std::string file;    ///< what its linked file says; empty if it has none
    bool linked = false; ///< as read: its art names a file
};

/// Records of the groups in file order.
using Model = std::map<std::string, std::vector<ModelRecord>>;

/// A line for each record; equal texts are equal databases.
std::string TextOf(const Model& model);

/// The store of this process at work on a folder.
class ModelStore {
public:
    explicit ModelStore(const std::filesystem::path& root);
    ~ModelStore();
    ModelStore(const ModelStore&) = delete;
    ModelStore& operator=(const ModelStore&) = delete;

    void SetRoot(const std::filesystem::path& root);
    const std::filesystem::path& root() const { return root_; }

    /// What the disk holds; a record that is not what its identity says has "damaged" for its edition.
    Model Read();

    /// Takes the lock alone once, so that interrupted work is finished; false if it can't be.
    bool Recover();

private:
    std::filesystem::path root_;
    std::unique_ptr<Globals> globals_ = std::make_unique<Globals>();
};

enum class Action { kAppend, kRewrite, kDelete, kMove, kPool, kMoveGroup };

/// One operation, and the databases that may come of it.
struct Step {
    Action action;
    std::string group, newGroup;
    int32_t number = 0;
    ModelRecord record; ///< to append, or as rewritten
    std::string text() const;
};

/// A step that this database has records for; new ones get `nextId`.
Step RandomStep(const Model& model, std::mt19937_64& random, uint64_t& nextId);

/// Runs it; true if the store says that it has succeeded.
bool Run(ModelStore& store, const Step& step);

/// The states that a database may be in afterwards, as texts; the first is that of success.
std::vector<std::string> OutcomesOf(Step step, const Model& before);
