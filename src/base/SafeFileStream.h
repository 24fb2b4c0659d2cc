#pragma once
// The one way the programs write a file. The bytes go into a temporary file
// beside the target; Commit flushes them to the disk, closes, and renames
// the temporary file over the target, so the target is either the old file
// or the whole new one, never a part. A target that exists and is no
// regular file (a device such as /dev/full, a pipe) is written in place.
// A symbolic link is followed: its destination gets the new bytes and the
// link stays. An existing target keeps its permissions.
//
// Every failure raises with the file's name and the system's reason: a file
// that cannot be created EFCreateError, a write, flush, close or rename
// EWriteError. Without Commit (an exception on the way) the temporary file
// is removed and the target stays as it was.

#include "base/Streams.h"

#include <functional>

class TSafeFileStream : public TStream {
public:
    explicit TSafeFileStream(const AnsiString& FileName);
    ~TSafeFileStream() override;
    TSafeFileStream(const TSafeFileStream&) = delete;
    TSafeFileStream& operator=(const TSafeFileStream&) = delete;

    // Writing only: Read gives nothing, Seek tells the position.
    std::int64_t Read(void* Buffer, std::int64_t Count) override;
    // Every byte or EWriteError.
    std::int64_t Write(const void* Buffer, std::int64_t Count) override;
    std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;

    // Puts the written bytes in place. Raises EWriteError when that fails;
    // the target then is as it was.
    void Commit();

    const AnsiString& FileName() const { return FFileName; }
    // Where the bytes go before Commit: a temporary file, or the target.
    const AnsiString& WorkName() const { return FWorkName; }

private:
    [[noreturn]] void Fail(const char* Reason);
    void Discard();

    AnsiString FFileName;
    AnsiString FTarget; // the file the name leads to, links followed
    AnsiString FWorkName;
    std::FILE* FFile = nullptr;
    bool FInPlace = false;
    bool FCommitted = false;
    std::int64_t FPosition = 0;
};

// Writes a file through a TSafeFileStream: Write fills the stream, then the
// file is committed.
void SaveFileSafely(const AnsiString& FileName, const std::function<void(TStream&)>& Write);
