/// What an import has taken so far, so that it can be stopped at any moment and go on later.
///
/// One text file for each source folder and group, in .velquorne-import of the database: a line for each
/// file, its record's number (-1: refused), a tab and its path.  A line is written when the record is safe
/// on disk.  If the program was stopped between the two, the group holds one record more than the lines
/// say; that record is recognised by its number and name.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>

class ImportJournal {
public:
    /// @param database, source  absolute paths; group as the plug-in names it
    ImportJournal(const std::string& database, const std::string& source, const std::string& group);
    ~ImportJournal();
    ImportJournal(const ImportJournal&) = delete;
    ImportJournal& operator=(const ImportJournal&) = delete;

    bool ok() const { return file_ != nullptr; }
    bool Has(const std::string& relative) const { return taken_.contains(relative); }

    /// The highest number written so far, -1 if none.
    int32_t lastNumber() const { return lastNumber_; }

    /// False if the line couldn't be written.
    bool Add(const std::string& relative, int32_t number);

private:
    std::unordered_map<std::string, int32_t> taken_;
    int32_t lastNumber_ = -1;
    std::FILE* file_ = nullptr;
};
