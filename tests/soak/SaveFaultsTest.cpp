// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/FaultySystem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>

namespace {

using FaultySystem::Fault;

constexpr int kErrors[] = {ENOSPC, EROFS, EACCES, EINTR, EIO, EDQUOT, EWOULDBLOCK};
constexpr int kFewTimes = 3;
constexpr mode_t kMode = 0606;
const QString kName = QStringLiteral("settings.xml");
const QByteArray kOld(4000, 'o');

struct Place
{
    const char* name;
    FaultySystem::PermanentErrors permanentErrors;
    qsizetype newSize = 9000;
    bool isMissing = false;
    bool isLinked = false;
    bool hasLeftover = false;
    /// Written in place; there an error that stays for good cannot be taken back.
    bool isInPlace = false;
};

const Place kPlaces[] = {
    {"a file of one's own", {}},
    {"a shorter text", {}, 100},
    {"no file yet", {}, 9000, true},
    {"behind a link", {}, 9000, false, true},
    {"a leftover of a killed save", {}, 9000, false, false, true},
    {"a folder that takes no file, longer", {{"create", EACCES}}, 9000, false, false, false, true},
    {"a folder that takes no file, shorter", {{"create", EROFS}}, 100, false, false, false, true},
    {"modes that can't be set", {{"fchmod", EPERM}}, 9000, false, false, false, true},
};

/// One folder with one file in it, and one save of it that meets a fault.
class Save
{
public:
    explicit Save(const Place& place)
        : m_place(place)
        , m_target(m_folder.filePath(place.isLinked ? QStringLiteral("real.xml") : kName))
        , m_new(place.newSize, 'n')
    {
        m_files.permanentErrors = place.permanentErrors;
    }

    /// The names of the calls of a save that nothing disturbs.
    std::vector<std::string> Calls()
    {
        return Run(std::nullopt) ? m_files.calls : std::vector<std::string>();
    }

    /// What is wrong after a save that met the fault; empty if nothing is.
    std::string Meet(const Fault& fault)
    {
        const bool isSaved = Run(fault);
        std::string wrong;
        const QByteArray content = Content();
        if (content != (isSaved ? m_new : Old())) {
            wrong += content == m_new || content == Old() ? "answers the wrong thing; " : "not whole; ";
        }
        if (fault.error == EINTR && fault.times <= kFewTimes && !isSaved) {
            wrong += "lost to a signal; ";
        }
        if (m_place.isLinked && !QFileInfo(m_folder.filePath(kName)).isSymLink()) {
            wrong += "the link is gone; ";
        }
        // A new file has its mode from the mask, which no call can fail to tell.
        if (!m_place.isMissing && Status().st_mode != m_before.st_mode) {
            wrong += "another mode; ";
        }
        if (!m_place.isMissing && Status().st_uid != m_before.st_uid) {
            wrong += "another owner; ";
        }
        if (!IsRemovalHit(fault) && !IsTidy(isSaved)) {
            wrong += "litter; ";
        }
        m_files.fault.reset();
        if (!m_files.Replace(m_folder.filePath(kName), m_new) || Content() != m_new || !IsTidy(true)) {
            wrong += "the next save does not mend it; ";
        }
        return wrong;
    }

private:
    bool Run(const std::optional<Fault>& fault)
    {
        for (const QString& name : Names()) {
            QFile::remove(m_folder.filePath(name));
        }
        if (!m_place.isMissing) {
            Put(m_target, kOld);
            ::chmod(QFile::encodeName(m_target).constData(), kMode);
        }
        if (m_place.isLinked) {
            QFile::link(QStringLiteral("real.xml"), m_folder.filePath(kName));
        }
        if (m_place.hasLeftover) {
            Put(m_target + QStringLiteral(".saving-abc123"), "half");
        }
        m_before = Status();
        m_files.fault = fault;
        return m_files.Replace(m_folder.filePath(kName), m_new);
    }
    static void Put(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray Old() const { return m_place.isMissing ? QByteArray("(none)") : kOld; }
    [[nodiscard]] QByteArray Content() const
    {
        QFile file(m_target);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    [[nodiscard]] struct stat Status() const
    {
        struct stat status = {};
        ::stat(QFile::encodeName(m_target).constData(), &status);
        return status;
    }
    [[nodiscard]] QStringList Names() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] bool IsTidy(bool isThere) const
    {
        QStringList expected;
        if (isThere || !m_place.isMissing) {
            expected << QFileInfo(m_target).fileName();
        }
        if (m_place.isLinked) {
            expected << kName;
        }
        expected.sort();
        return Names() == expected;
    }
    // A leftover stays until the next save if its removal failed.
    [[nodiscard]] bool IsRemovalHit(const Fault& fault) const
    {
        const std::string& hit = m_files.calls.at(static_cast<std::size_t>(fault.call));
        return hit == "unlink" || fault.everything || m_place.hasLeftover;
    }

    const Place& m_place;
    QTemporaryDir m_folder;
    QString m_target;
    QByteArray m_new;
    FaultyFiles m_files;
    struct stat m_before = {};
};

std::vector<Fault> FaultsOf(int call, const std::string& name, const Place& place)
{
    std::vector<Fault> faults;
    for (const int error : kErrors) {
        faults.push_back({call, error});
        // A signal comes now and then; the rest may stay.
        faults.push_back({call, error, error == EINTR ? kFewTimes : Fault::kForEver});
        if (error != EINTR && !place.isInPlace) {
            faults.push_back({call, error, Fault::kForEver, true});
        }
    }
    if (name == "pwrite") {
        faults.push_back({call, 0});
        faults.push_back({call, 0, Fault::kForEver});
    }
    return faults;
}

TEST(SaveFaults, eachCallOfASave_failingInEachWay_leavesTheOldTextOrTheNew)
{
    int injected = 0;
    int survived = 0;
    std::set<std::string> names;
    for (const Place& place : kPlaces) {
        Save save(place);
        const std::vector<std::string> calls = save.Calls();
        ASSERT_FALSE(calls.empty()) << place.name;
        names.insert(calls.begin(), calls.end());
        for (int call = 0; call < static_cast<int>(calls.size()); ++call) {
            const std::string& name = calls.at(static_cast<std::size_t>(call));
            if (place.permanentErrors.contains(name)) {
                continue;
            }
            for (const Fault& fault : FaultsOf(call, name, place)) {
                const std::string wrong = save.Meet(fault);
                ++injected;
                survived += wrong.empty() ? 1 : 0;
                EXPECT_EQ(wrong, "") << place.name << ": call " << call << ", " << name << ", "
                                     << (fault.error == 0 ? "half written" : std::strerror(fault.error))
                                     << (fault.everything                 ? ", everything from there on"
                                         : fault.times == Fault::kForEver ? ", for good"
                                                                          : "");
            }
        }
    }
    // Each call that a save makes stands here; one that is missing would not have been tried.
    const std::set<std::string> expected = {"close",   "create",          "faccessat", "fchmod",   "flock",
                                            "fstat",   "fsync",           "ftruncate", "open",     "open64",
                                            "opendir", "posix_fallocate", "pread",     "readlink", "rename",
                                            "stat",    "statx",           "unlink",    "pwrite"};
    EXPECT_EQ(names, expected);
    std::printf("figure: faults in a save: injected %d, survived %d\n", injected, survived);
}

TEST(SaveFaults, anotherInstanceSavingBetweenAnyTwoCalls_spoilsNothing)
{
    const QByteArray mine(3000, 'm');
    const QByteArray theirs(5000, 't');
    const QTemporaryDir folder;
    const QString path = folder.filePath(kName);
    SystemFileStore other;
    FaultyFiles files;
    ASSERT_TRUE(other.Replace(path, kOld));
    ASSERT_TRUE(files.Replace(path, mine));
    const auto calls = static_cast<int>(files.calls.size());
    const auto renaming = std::find(files.calls.begin(), files.calls.end(), "rename") - files.calls.begin();
    for (int moment = 0; moment < calls; ++moment) {
        ASSERT_TRUE(other.Replace(path, kOld));
        bool hasOtherSaved = false;
        files.observer = [&](int call) {
            if (call == moment && !hasOtherSaved) {
                hasOtherSaved = other.Replace(path, theirs);
            }
        };
        EXPECT_TRUE(files.Replace(path, mine)) << "at call " << moment;
        EXPECT_TRUE(hasOtherSaved) << "at call " << moment;
        // The last writer wins.
        EXPECT_EQ(files.Read(path, 10'000), moment <= renaming ? mine : theirs) << "at call " << moment;
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{kName});
    }
}

TEST(SaveFaults, temporaryFileLockedByAnotherInstance_isReplacedByANewOne)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(kName);
    FaultyFiles files;
    ASSERT_TRUE(files.Replace(path, kOld));
    ASSERT_TRUE(files.Replace(path, kOld));
    const auto first = [&](const char* name) {
        return std::find(files.calls.begin(), files.calls.end(), name) - files.calls.begin();
    };
    const auto locking = first("flock");
    const auto renaming = first("rename");
    // The other instance interprets the file as a leftover and locks it; it deletes the file at a later call.
    QFile leftover;
    files.observer = [&](int call) {
        if (call == locking) {
            const QStringList names = QDir(folder.path()).entryList({kName + QStringLiteral(".*")});
            ASSERT_EQ(names.size(), 1);
            leftover.setFileName(folder.filePath(names.first()));
            ASSERT_TRUE(leftover.open(QIODevice::ReadOnly));
            ASSERT_EQ(::flock(leftover.handle(), LOCK_EX | LOCK_NB), 0);
        } else if (call == renaming) {
            ::unlink(QFile::encodeName(leftover.fileName()).constData());
        }
    };
    EXPECT_TRUE(files.Replace(path, "new"));
    EXPECT_EQ(files.Read(path, 10), "new");
}

} // namespace
