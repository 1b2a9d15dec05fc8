/// Changes of files that are on the disk when they return.  All paths are on disk; false leaves a sentence in
/// *error.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

/// Copies a file, times and all, to a place where there is none; its folders are made.  What a failed copy
/// has made is gone.
bool CopyDurably(const std::string& from, const std::string& to, std::string* error);

/// Moves a file or a folder to a place where there is none; its folders are made.  Across file systems it is
/// copied whole before the old one goes.
bool MoveDurably(const std::string& from, const std::string& to, std::string* error);

/// Replaces a file in one step by what `write` puts into a new one, whose path it gets.  The new file is made
/// at `work`, which lies on the same file system and must be free.
bool ReplaceDurably(const std::string& path, const std::string& work,
                    const std::function<bool(int file)>& write, std::string* error);

/// All of it or false, with errno set.
bool WriteAll(int file, const void* bytes, uint64_t count);
