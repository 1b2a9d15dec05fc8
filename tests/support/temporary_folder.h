/// A folder on disk for the length of a test.
#pragma once

#include <filesystem>
#include <string>

/// Makes an empty folder with a name of its own; it is removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    /// The same folder as the plug-in writes it: cp932 with backslashes.
    std::string storePath() const;

private:
    std::filesystem::path path_;
};

/// A path as the plug-in writes it, cp932 with backslashes.  It must have such a form.
std::string StorePathOf(const std::filesystem::path& path);

/// Makes `folder` the user's documents folder where the platform allows that for one program; elsewhere the
/// one who starts the tests gives them a home of their own.  An empty path goes back to the user's.
void RedirectDocuments(const std::filesystem::path& folder);

/// The same for modules that are loaded, which know nothing of what this program has set.  Lasts as long as
/// the program.
void RedirectDocumentsOfModules(const std::filesystem::path& folder);
