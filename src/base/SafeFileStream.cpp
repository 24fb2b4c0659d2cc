#include "base/SafeFileStream.h"

#include "base/Exceptions.h"
#include "base/FileNames.h"
#include "base/Strings.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#define LEXSMITH_GETPID _getpid
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#define LEXSMITH_GETPID getpid
#endif

namespace fs = std::filesystem;

namespace {

// A save that cannot put its bytes on the disk.
constexpr const char* SWriteFileError = "Cannot write file \"%s\". %s";
// Links are followed this far, as the system follows them.
constexpr int MaxLinkDepth = 40;

// The file a name leads to: symbolic links followed, also a last one that
// leads nowhere yet (the save creates its destination).
fs::path FollowLinks(const fs::path& Name) {
    fs::path path = Name;
    std::error_code ec;
    for (int depth = 0; depth < MaxLinkDepth && fs::is_symlink(path, ec); ++depth) {
        const fs::path next = fs::read_symlink(path, ec);
        if (ec) break;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

bool SyncFile(std::FILE* File) {
#ifdef _WIN32
    return _commit(_fileno(File)) == 0;
#else
    if (fsync(fileno(File)) == 0) return true;
    // Pipes and some devices have nothing to sync.
    return errno == EINVAL || errno == EROFS;
#endif
}

// The folder entry of a renamed file reaches the disk with its folder.
void SyncFolder(const fs::path& Folder) {
#ifndef _WIN32
    const int fd = open(Folder.empty() ? "." : Folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
#else
    (void)Folder;
#endif
}

// The new file gets the old one's permissions (and owner, where allowed).
void CopyAccess(const fs::path& From, std::FILE* To, const fs::path& ToName) {
    std::error_code ec;
    fs::permissions(ToName, fs::status(From, ec).permissions(), ec);
#ifndef _WIN32
    struct stat old {};
    if (stat(From.c_str(), &old) == 0 && fchown(fileno(To), old.st_uid, old.st_gid) != 0) {
        // Not ours to give away: the file stays the saving user's.
    }
#else
    (void)To;
#endif
}

// A new file for writing, never one that is there already.
std::FILE* CreateNewFile(const AnsiString& Name) {
#ifdef _WIN32
    // The system's C library has no "x" mode; the exclusive create of its
    // lower level does the same.
    const int fd = _open(Name.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY,
                         _S_IREAD | _S_IWRITE);
    if (fd < 0) return nullptr;
    std::FILE* file = _fdopen(fd, "wb");
    if (!file) _close(fd);
    return file;
#else
    return std::fopen(Name.c_str(), "wbx");
#endif
}

} // namespace

TSafeFileStream::TSafeFileStream(const AnsiString& FileName) : FFileName(FileName) {
    std::error_code ec;
    const fs::file_status status = fs::status(NarrowPath(FileName), ec); // links followed
    const bool exists = fs::exists(status);
    if (exists && fs::is_directory(status))
        throw EFCreateError(FormatMessage(RtlMessages::SFCreateError, {FileName, "Is a directory"}));
    // A device or a pipe cannot be replaced by a rename: it is written
    // itself, by the name given (/dev/stdout leads to a pipe that has no
    // name of its own).
    FInPlace = exists && !fs::is_regular_file(status);
    fs::path target = NarrowPath(FileName);
    if (exists && !FInPlace) {
        const fs::path real = fs::canonical(target, ec);
        if (!ec) target = real;
    } else if (!exists) {
        target = FollowLinks(target);
    }
    FTarget = NarrowName(target);
#ifdef _WIN32
    // A read-only file is not written on Windows, by any means: the system
    // refuses to replace it (Wine's rename would not).
    if (exists && (status.permissions() & fs::perms::owner_write) == fs::perms::none)
        throw EFCreateError(
            FormatMessage(RtlMessages::SFCreateError, {FileName, std::strerror(EACCES)}));
#endif
    if (FInPlace) {
        FWorkName = FileName;
        FFile = std::fopen(FWorkName.c_str(), "wb");
    } else {
        const fs::path folder = target.parent_path();
        const AnsiString stem =
            "." + NarrowName(target.filename()) + "." + std::to_string(LEXSMITH_GETPID()) + ".";
        for (int attempt = 0; attempt < 100 && !FFile; ++attempt) {
            FWorkName = NarrowName(folder / NarrowPath(stem + std::to_string(attempt) + ".tmp"));
            errno = 0;
            // Never take over a file that is there already.
            FFile = CreateNewFile(FWorkName);
            if (!FFile && errno != EEXIST) break;
        }
    }
    if (!FFile) {
        const std::string reason = std::strerror(errno);
        throw EFCreateError(FormatMessage(RtlMessages::SFCreateError, {FileName, reason}));
    }
    if (exists && !FInPlace) CopyAccess(target, FFile, NarrowPath(FWorkName));
}

TSafeFileStream::~TSafeFileStream() {
    if (!FCommitted) Discard();
}

void TSafeFileStream::Discard() {
    if (FFile) std::fclose(FFile);
    FFile = nullptr;
    if (!FInPlace && !FWorkName.empty()) {
        std::error_code ec;
#ifdef _WIN32
        // It may carry a read-only file's attribute, which keeps it from going.
        fs::permissions(NarrowPath(FWorkName), fs::perms::owner_write, fs::perm_options::add, ec);
#endif
        fs::remove(NarrowPath(FWorkName), ec);
    }
}

void TSafeFileStream::Fail(const char* Reason) {
    const std::string reason = Reason;
    Discard();
    FCommitted = true; // nothing is left to clean up
    throw EWriteError(FormatMessage(SWriteFileError, {FFileName, reason}));
}

std::int64_t TSafeFileStream::Read(void*, std::int64_t) {
    return 0;
}

std::int64_t TSafeFileStream::Write(const void* Buffer, std::int64_t Count) {
    if (Count <= 0) return 0;
    if (!FFile) Fail("The file is closed");
    errno = 0;
    const std::size_t written = std::fwrite(Buffer, 1, std::size_t(Count), FFile);
    if (written != std::size_t(Count)) Fail(std::strerror(errno ? errno : EIO));
    FPosition += Count;
    return Count;
}

std::int64_t TSafeFileStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
    // The writers only ask where they are.
    return Offset == 0 && Origin != soBeginning ? FPosition : -1;
}

void TSafeFileStream::Commit() {
    if (FCommitted) return;
    if (!FFile) Fail("The file is closed");
    errno = 0;
    if (std::fflush(FFile) != 0) Fail(std::strerror(errno ? errno : EIO));
    if (!SyncFile(FFile)) Fail(std::strerror(errno ? errno : EIO));
    std::FILE* file = std::exchange(FFile, nullptr);
    errno = 0;
    if (std::fclose(file) != 0) Fail(std::strerror(errno ? errno : EIO));
    if (!FInPlace) {
        std::error_code ec;
        fs::rename(NarrowPath(FWorkName), NarrowPath(FTarget), ec);
        if (ec) Fail(ec.message().c_str());
        SyncFolder(NarrowPath(FTarget).parent_path());
    }
    FCommitted = true;
}

void SaveFileSafely(const AnsiString& FileName, const std::function<void(TStream&)>& Write) {
    TSafeFileStream stream(FileName);
    Write(stream);
    stream.Commit();
}
