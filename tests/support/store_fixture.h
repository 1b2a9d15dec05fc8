/// A database in a temporary folder and the state that the store works on, without a host.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/record_layout.h"
#include "tests/support/temporary_folder.h"

using Bytes = std::vector<uint8_t>;

Bytes BytesOfFile(const std::filesystem::path& path);
std::string TextOfFile(const std::filesystem::path& path);
void WriteFileBytes(const std::filesystem::path& path, const Bytes& bytes);

/// The records of a group file as they are stored, cut at their size words without any code of the store;
/// empty if the file doesn't hold as many as its count says.
std::vector<Bytes> RecordsInFile(const std::filesystem::path& path);

/// Bytes written out by hand, group by group.
Bytes Join(std::initializer_list<Bytes> parts);
/// A text in a field of zeros.
Bytes Field(const std::string& text, size_t fieldBytes);
uint32_t BigEndianAt(const Bytes& bytes, size_t place);
void PutBigEndian(Bytes& bytes, size_t place, uint32_t value);

class StoreTest : public ::testing::Test {
protected:
    StoreTest();
    ~StoreTest() override;

    std::filesystem::path root() const { return folder_.path(); }
    /// The file of a group in the root.
    std::filesystem::path fileOf(const std::string& group) const { return root() / (group + ".AID"); }

    /// Makes a group with a record of each name, through WriteRecord, and selects none.
    void MakeGroup(const std::string& group, const std::vector<std::string>& names);
    /// A new record in `curRecord` with a preview and one object that depend on the name.
    void MakeCurRecord(const std::string& name);
    /// The names of a group's records, read one by one.
    std::vector<std::string> NamesIn(const std::string& group);
    /// A record as it is stored; empty if it can't be read.
    Bytes Stored(const std::string& group, int32_t number);
    /// A record unpacked and in host order, up to its size word; empty if it can't be read.
    Bytes Expanded(const std::string& group, int32_t number);
    const RecordStart& cur() const { return *reinterpret_cast<RecordStart*>(BlockBytes(globals->curRecord)); }

private:
    TemporaryFolder folder_;
    std::unique_ptr<Globals> globals_ = std::make_unique<Globals>();
};
