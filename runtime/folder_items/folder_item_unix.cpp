#include "folder_items/folder_item_unix.h"

#include "folder_items/paths.h"
#include "folder_items/run_program.h"

#include "files/unix_data_file.h"
#include "process/process_state.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <vector>

namespace kelp {
namespace {

bool EndsWithSlash(const std::string &path) { return !path.empty() && path.back() == '/'; }

std::string WithoutSlash(const std::string &path) {
    return path.size() > 1 && EndsWithSlash(path) ? path.substr(0, path.size() - 1) : path;
}

// The entries of a folder except "." and "..", in the order readdir gives.
std::vector<std::string> Listing(const std::string &folder) {
    std::vector<std::string> names;
    if (DIR *dir = opendir(folder.c_str())) {
        while (dirent *entry = readdir(dir)) {
            std::string name = entry->d_name;
            if (name != "." && name != "..")
                names.push_back(name);
        }
        closedir(dir);
    }
    return names;
}

std::string gProgramPath;

} // namespace

// ------------------------------------------------------------ the default folder

void SetProgramPath(const char *argv0) { gProgramPath = argv0 ? argv0 : ""; }

const std::string &DefaultFolder() {
    static const std::string folder = [] {
        std::string program = gProgramPath;
        if (program.empty() && ProcessArgumentCount() > 0 && ProcessArguments()[0])
            program = ProcessArguments()[0];
        // A bare name was found along PATH: ask the system where it is.
        if (program.find('/') == std::string::npos) {
            char buffer[PATH_MAX];
            ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
            program = n > 0 ? std::string(buffer, static_cast<size_t>(n)) : std::string();
        }
        if (program.empty() || program[0] != '/') {
            char cwd[PATH_MAX];
            std::string base = getcwd(cwd, sizeof cwd) ? cwd : "/";
            program = base + "/" + program;
        }
        std::string folderPath = NormalizePath(program.substr(0, program.rfind('/') + 1));
        return WithoutSlash(folderPath);
    }();
    return folder;
}

// ---------------------------------------------------------------- construction

FolderItemImpUnix::FolderItemImpUnix(std::string path) : mPath(std::move(path)) {
    struct stat st;
    if (!EndsWithSlash(mPath) && stat(mPath.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        mPath += '/';
}

std::unique_ptr<FolderItemImpUnix> FolderItemImpUnix::FromPath(const std::string &path) {
    if (path.empty())
        return nullptr;
    std::string full = path;
    if (path[0] != '/') {
        const std::string &base = DefaultFolder();
        full = (EndsWithSlash(base) ? base : base + "/") + path;
    }
    struct stat st;
    if (stat(full.c_str(), &st) != 0 && errno != ENOENT)
        return nullptr; // unreachable, not merely missing
    return std::make_unique<FolderItemImpUnix>(full);
}

std::unique_ptr<FolderItemImp> FolderItemImpUnix::Clone() const {
    return std::make_unique<FolderItemImpUnix>(mPath);
}

bool FolderItemImpUnix::SameAs(const FolderItemImp &other) const {
    return !other.IsVirtual() && WithoutSlash(other.AbsolutePath()) == WithoutSlash(mPath);
}

bool FolderItemImpUnix::Fail() {
    mLastError = errno ? errno : EIO;
    return false;
}

// ---------------------------------------------------------------- queries

bool FolderItemImpUnix::Exists() { return access(mPath.c_str(), F_OK) == 0 ? true : Fail(); }

bool FolderItemImpUnix::IsAlias() {
    struct stat st;
    return lstat(WithoutSlash(mPath).c_str(), &st) == 0 && S_ISLNK(st.st_mode);
}

bool FolderItemImpUnix::IsDirectory() {
    struct stat st;
    return stat(mPath.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::string FolderItemImpUnix::Name() const { return LastPathComponent(mPath); }

bool FolderItemImpUnix::Rename(const std::string &newName) {
    std::string bare = WithoutSlash(mPath);
    std::string target = bare.substr(0, bare.size() - Name().size()) + newName;
    if (rename(bare.c_str(), target.c_str()) != 0)
        return Fail();
    mPath = EndsWithSlash(mPath) ? target + "/" : target;
    return true;
}

std::string FolderItemImpUnix::URLPath() const { return FileURLFromPath(mPath); }

int32_t FolderItemImpUnix::Permissions() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0)
        return Fail(), 0;
    return static_cast<int32_t>(st.st_mode & 07777);
}

bool FolderItemImpUnix::SetPermissions(int32_t mode) {
    return chmod(mPath.c_str(), static_cast<mode_t>(mode & 07777)) == 0 ? true : Fail();
}

std::string FolderItemImpUnix::Owner() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0)
        return Fail(), std::string();
    passwd *user = getpwuid(st.st_uid);
    return user ? user->pw_name : std::to_string(st.st_uid);
}

bool FolderItemImpUnix::SetOwner(const std::string &name) {
    passwd *user = getpwnam(name.c_str());
    if (!user)
        return errno = EINVAL, Fail();
    return chown(mPath.c_str(), user->pw_uid, static_cast<gid_t>(-1)) == 0 ? true : Fail();
}

std::string FolderItemImpUnix::Group() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0)
        return Fail(), std::string();
    group *g = getgrgid(st.st_gid);
    return g ? g->gr_name : std::to_string(st.st_gid);
}

bool FolderItemImpUnix::SetGroup(const std::string &name) {
    group *g = getgrnam(name.c_str());
    if (!g)
        return errno = EINVAL, Fail();
    return chown(mPath.c_str(), static_cast<uid_t>(-1), g->gr_gid) == 0 ? true : Fail();
}

bool FolderItemImpUnix::Visible() { return Name().empty() || Name()[0] != '.'; }

bool FolderItemImpUnix::SetVisible(bool visible) {
    std::string name = Name();
    if (Visible() == visible || name.empty())
        return true;
    return Rename(visible ? name.substr(1) : "." + name);
}

// An item that can't be read says so (the base class would answer true).
bool FolderItemImpUnix::IsReadable() { return access(mPath.c_str(), R_OK) == 0; }

bool FolderItemImpUnix::IsWriteable() {
    return access(mPath.c_str(), W_OK) == 0 || FolderItemImp::IsWriteable();
}

int64_t FolderItemImpUnix::CreationSeconds() {
    // The birth time where the file system keeps one, else the last change.
    struct statx sx;
    if (statx(AT_FDCWD, mPath.c_str(), 0, STATX_BTIME | STATX_CTIME, &sx) != 0)
        return Fail(), 0;
    int64_t seconds = (sx.stx_mask & STATX_BTIME) ? sx.stx_btime.tv_sec : sx.stx_ctime.tv_sec;
    return seconds + kSecondsFrom1904To1970;
}

int64_t FolderItemImpUnix::ModificationSeconds() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0)
        return Fail(), 0;
    return static_cast<int64_t>(st.st_mtime) + kSecondsFrom1904To1970;
}

bool FolderItemImpUnix::SetModificationSeconds(int64_t seconds) {
    struct timespec times[2];
    times[0].tv_sec = 0;
    times[0].tv_nsec = UTIME_OMIT; // the access time stays
    times[1].tv_sec = static_cast<time_t>(seconds - kSecondsFrom1904To1970);
    times[1].tv_nsec = 0;
    return utimensat(AT_FDCWD, mPath.c_str(), times, 0) == 0 ? true : Fail();
}

int64_t FolderItemImpUnix::Length() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0)
        return Fail(), 0;
    return static_cast<int64_t>(st.st_size);
}

bool FolderItemImpUnix::SetLength(int64_t length) {
    return truncate(mPath.c_str(), static_cast<off_t>(length < 0 ? 0 : length)) == 0 ? true
                                                                                     : Fail();
}

// ---------------------------------------------------------------- data

std::unique_ptr<RandomAccessMechanism> FolderItemImpUnix::OpenData(bool write) {
    auto file = std::make_unique<UnixDataFile>();
    if (!file->Open(mPath, write ? UnixDataFile::kReadWrite : UnixDataFile::kRead)) {
        mLastError = file->LastError();
        return nullptr;
    }
    return file;
}

std::unique_ptr<RandomAccessMechanism> FolderItemImpUnix::CreateData() {
    auto file = std::make_unique<UnixDataFile>();
    if (!file->Create(mPath)) {
        mLastError = file->LastError();
        return nullptr;
    }
    return file;
}

// ---------------------------------------------------------------- the tree

std::unique_ptr<FolderItemImp> FolderItemImpUnix::Parent() const {
    if (mPath.size() <= 1)
        return nullptr;
    size_t cut = Name().size() + (EndsWithSlash(mPath) ? 1 : 0);
    if (cut >= mPath.size())
        return nullptr;
    return std::make_unique<FolderItemImpUnix>(mPath.substr(0, mPath.size() - cut));
}

int32_t FolderItemImpUnix::Count() {
    if (!IsDirectory())
        return 0;
    return static_cast<int32_t>(Listing(mPath).size());
}

std::unique_ptr<FolderItemImp> FolderItemImpUnix::Item(int32_t index, bool resolve) {
    if (index < 0 || !IsDirectory())
        return nullptr;
    std::vector<std::string> names = Listing(mPath);
    if (static_cast<size_t>(index) >= names.size())
        return nullptr;
    auto item = std::make_unique<FolderItemImpUnix>((EndsWithSlash(mPath) ? mPath : mPath + "/") +
                                                    names[static_cast<size_t>(index)]);
    if (resolve && item->IsAlias())
        if (std::unique_ptr<FolderItemImp> target = item->ResolveAlias())
            return target;
    return item;
}

std::unique_ptr<FolderItemImp> FolderItemImpUnix::Child(const std::string &name) {
    if (!Exists() || !IsDirectory())
        return nullptr;
    if (name == ".")
        return Clone();
    if (name == "..")
        return Parent();
    return std::make_unique<FolderItemImpUnix>((EndsWithSlash(mPath) ? mPath : mPath + "/") + name);
}

std::unique_ptr<FolderItemImp> FolderItemImpUnix::ResolveAlias() {
    char target[1024];
    ssize_t n = readlink(WithoutSlash(mPath).c_str(), target, sizeof target);
    if (n <= 0 || n >= static_cast<ssize_t>(sizeof target))
        return Fail(), nullptr;
    std::string path(target, static_cast<size_t>(n));
    // A relative target is relative to the link's own folder.
    if (path[0] != '/') {
        std::string bare = WithoutSlash(mPath);
        path = bare.substr(0, bare.rfind('/') + 1) + path;
    }
    return std::make_unique<FolderItemImpUnix>(path);
}

// ---------------------------------------------------------------- changes

bool FolderItemImpUnix::CreateAsFolder() {
    if (mkdir(mPath.c_str(), 0777) != 0)
        return Fail();
    if (!EndsWithSlash(mPath))
        mPath += '/';
    return true;
}

bool FolderItemImpUnix::Delete() {
    // A link is removed itself, never what it points at.
    std::string bare = WithoutSlash(mPath);
    struct stat st;
    if (lstat(bare.c_str(), &st) != 0)
        return Fail();
    int result = S_ISDIR(st.st_mode) ? rmdir(bare.c_str()) : unlink(bare.c_str());
    return result == 0 ? true : Fail();
}

bool FolderItemImpUnix::CopyTo(FolderItemImp &destination) {
    if (destination.IsVirtual()) // no path of the host system to give cp
        return CopyContentsTo(destination);
    std::vector<std::string> argv = {"cp"};
    if (IsDirectory() && !IsAlias())
        argv.push_back("-R"); // a folder is copied whole
    argv.insert(argv.end(), {"--", WithoutSlash(mPath), WithoutSlash(destination.AbsolutePath())});
    errno = 0;
    return RunAndWait(argv) == 0 ? true : Fail();
}

bool FolderItemImpUnix::MoveTo(FolderItemImp &destination) {
    if (destination.IsVirtual())
        return CopyContentsTo(destination) && DeleteWithContents();
    errno = 0;
    return RunAndWait({"mv", "-f", "--", WithoutSlash(mPath),
                       WithoutSlash(destination.AbsolutePath())}) == 0
               ? true
               : Fail();
}

bool FolderItemImpUnix::Launch(const std::string &parameters) {
    std::vector<std::string> argv = {WithoutSlash(mPath)};
    if (!parameters.empty())
        argv.push_back(parameters); // one argument, as the program gave it
    return RunDetached(argv) ? true : Fail();
}

void FolderItemImpUnix::MakeExecutable() {
    struct stat st;
    if (stat(mPath.c_str(), &st) != 0) {
        Fail();
        return;
    }
    mode_t mask = umask(0);
    umask(mask);
    if (chmod(mPath.c_str(), st.st_mode | (0111 & ~mask)) != 0)
        Fail();
}

// ------------------------------------------------------- base-class answers

bool FolderItemImp::IsWriteable() {
    if (Exists() && !IsDirectory()) {
        // Write the first byte back over itself, then put the date back.
        int64_t modified = ModificationSeconds();
        std::unique_ptr<RandomAccessMechanism> data = OpenData(true);
        if (!data)
            return false;
        uint8_t byte;
        int64_t got = 0;
        bool ok = true;
        if (data->Read(&byte, 1, &got) && got == 1) {
            data->SetPosition(0);
            ok = data->Write(&byte, 1);
        }
        ok = data->Close() && ok;
        SetModificationSeconds(modified);
        return ok;
    }
    std::unique_ptr<FolderItemImp> folder = IsDirectory() ? Clone() : Parent();
    if (!folder)
        return false;
    for (int counter = 0; counter < 1000; ++counter) {
        std::string name = "$$TestFile$$" + (counter ? std::to_string(counter) : std::string());
        std::unique_ptr<FolderItemImp> probe = folder->Child(name);
        if (!probe)
            return false;
        if (probe->Exists())
            continue;
        bool made = probe->CreateData() != nullptr;
        if (made)
            probe->Delete();
        return made;
    }
    return false;
}

bool FolderItemImp::DeleteWithContents() {
    if (IsAlias() || !IsDirectory())
        return Delete();
    int32_t count = Count();
    std::vector<std::unique_ptr<FolderItemImp>> children;
    for (int32_t i = 0; i < count; ++i)
        if (std::unique_ptr<FolderItemImp> child = Item(i, false))
            children.push_back(std::move(child));
    for (std::unique_ptr<FolderItemImp> &child : children)
        if (!child->DeleteWithContents()) {
            mLastError = child->mLastError;
            return false;
        }
    return Delete();
}

} // namespace kelp
