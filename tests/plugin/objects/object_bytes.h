/// Records for tests of stored objects: bytes written out by hand, and records that hold them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record_layout.h"

using Bytes = std::vector<uint8_t>;

/// Bytes in the order in which they lie on disk.
class StoredBytes {
public:
    /// Digits in pairs; blanks mean nothing.
    StoredBytes& Hex(std::string_view digits) {
        int high = -1;
        for (const char c : digits) {
            if (c == ' ') continue;
            const int value = c <= '9' ? c - '0' : c - 'A' + 10;
            if (high >= 0) bytes_.push_back(static_cast<uint8_t>(high << 4 | value));
            high = high >= 0 ? -1 : value;
        }
        return *this;
    }
    StoredBytes& Fill(size_t count, uint8_t value = 0) {
        bytes_.insert(bytes_.end(), count, value);
        return *this;
    }
    /// The text, then zeros up to `width` bytes in all.
    StoredBytes& Text(std::string_view text, size_t width) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return Fill(width - text.size());
    }
    StoredBytes& Add(const Bytes& more) {
        bytes_.insert(bytes_.end(), more.begin(), more.end());
        return *this;
    }
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

/// Gives the plug-in a state of its own for the length of a test.
class ObjectsTest : public testing::Test {
protected:
    void SetUp() override {
        saved_ = globals;
        state_ = std::make_unique<Globals>();
        globals = state_.get();
        globals->swapBytes = 1;
    }
    void TearDown() override {
        FreeHandle(globals->curRecord);
        globals = saved_;
    }

    /// An expanded record without objects.  A block of exactly its length lets a sanitizer see a step over
    /// the end of the record.
    static MemoryHandle EmptyRecord(uint64_t room = kEmptyRecordBytes, uint64_t grain = 1) {
        const MemoryHandle record = NewHandle(room, grain);
        StartOf(record)->header.size = kEmptyRecordBytes;
        return record;
    }
    static MemoryHandle RecordOf(const std::vector<Bytes>& objects) {
        uint64_t room = kEmptyRecordBytes;
        for (const Bytes& object : objects) room += object.size();
        const MemoryHandle record = EmptyRecord(room);
        uint8_t* place = BlockBytes(record) + kObjectsOffset;
        for (const Bytes& object : objects) {
            std::memcpy(place, object.data(), object.size());
            place += object.size();
        }
        StartOf(record)->header.objectCount = static_cast<uint32_t>(objects.size());
        StartOf(record)->header.size = static_cast<uint32_t>(room);
        return record;
    }
    static RecordStart* StartOf(MemoryHandle record) {
        return reinterpret_cast<RecordStart*>(BlockBytes(record));
    }
    static Bytes AllBytes(MemoryHandle record) {
        return {BlockBytes(record), BlockBytes(record) + BlockSize(record)};
    }
    static Bytes Stream(MemoryHandle record) {
        const auto stream = ObjectStream(record);
        return {stream.begin(), stream.end()};
    }

private:
    Globals* saved_ = nullptr;
    std::unique_ptr<Globals> state_;
};
