// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/StoredFiles.h"

#include <QElapsedTimer>

#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>
#include <windows.h>

#include <chrono>
#include <thread>

namespace {

class WindowsFileStoreTest : public StoredFiles
{
protected:
    [[nodiscard]] std::wstring Native(const char* name) const { return Path(name).toStdWString(); }
    // Opens the file as another program may; closed at the end of the test.
    HANDLE Hold(const char* name, DWORD sharing)
    {
        HANDLE handle = ::CreateFileW(Native(name).c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_NE(handle, INVALID_HANDLE_VALUE) << name;
        return handle;
    }
};

// Names of devices, with and without an ending, in a folder too.
constexpr const char* kDevices[]{"NUL", "nul", "CON", "AUX", "COM1", "LPT1"};

TEST_F(WindowsFileStoreTest, read_unreadableFile_answersNothing)
{
    EXPECT_EQ(files.Read(Path("missing"), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(folder.path(), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(QString(), kLimit), std::nullopt);
    EXPECT_EQ(files.Read(QStringLiteral("\\\\.\\pipe\\none"), kLimit), std::nullopt);
    for (const char* device : kDevices) {
        EXPECT_EQ(files.Read(QLatin1String(device), kLimit), std::nullopt) << device;
        EXPECT_EQ(files.Read(Path(device), kLimit), std::nullopt) << device;
    }
}

TEST_F(WindowsFileStoreTest, device_takesNothing)
{
    for (const char* device : kDevices) {
        EXPECT_FALSE(files.Replace(QLatin1String(device), "new")) << device;
        EXPECT_FALSE(files.Write(QLatin1String(device), "new")) << device;
    }
    EXPECT_TRUE(Names().isEmpty());
}

TEST_F(WindowsFileStoreTest, backslashesAndSlashes_meanOneFile)
{
    EXPECT_TRUE(files.Replace(QDir::toNativeSeparators(Path("a")), "new"));
    EXPECT_EQ(files.Read(Path("a"), kLimit), QByteArray("new"));
}

TEST_F(WindowsFileStoreTest, longPath_isReadAndReplaced)
{
    const QString below(60, u'x');
    const QString path = folder.filePath(QStringList(6, below).join(u'/'));
    ASSERT_TRUE(QDir().mkpath(path));
    const QString file = path + QStringLiteral("/settings.xml");
    EXPECT_TRUE(files.Replace(file, "old"));
    EXPECT_TRUE(files.Replace(file, "new"));
    EXPECT_EQ(files.Read(file, kLimit), QByteArray("new"));
    EXPECT_EQ(QDir(path).entryList(QDir::Files), QStringList{QStringLiteral("settings.xml")});
}

TEST_F(WindowsFileStoreTest, replace_keepsAttributes)
{
    Put("a", "old");
    constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    ASSERT_TRUE(::SetFileAttributesW(Native("a").c_str(), kHidden));
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(::GetFileAttributesW(Native("a").c_str()) & kHidden, kHidden);
}

// The list of rights of a file as text.
QString RightsOf(const std::wstring& name)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetNamedSecurityInfoW(name.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
        return {};
    }
    wchar_t* text = nullptr;
    ::ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1,
                                                           DACL_SECURITY_INFORMATION, &text, nullptr);
    const QString rights = QString::fromWCharArray(text);
    ::LocalFree(text);
    ::LocalFree(descriptor);
    return rights;
}

// Everything to the owner alone, nothing inherited; false on a file system without rights.
bool GiveToTheOwnerAlone(const std::wstring& name)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR old = nullptr;
    if (::GetNamedSecurityInfoW(name.c_str(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                                nullptr, nullptr, &old) != ERROR_SUCCESS) {
        return false;
    }
    wchar_t* text = nullptr;
    ::ConvertSidToStringSidW(owner, &text);
    const std::wstring rights = L"D:P(A;;FA;;;" + std::wstring(text) + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &descriptor,
                                                           nullptr);
    const BOOL isSet = ::SetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, descriptor);
    ::LocalFree(descriptor);
    ::LocalFree(text);
    ::LocalFree(old);
    return isSet != FALSE;
}

TEST_F(WindowsFileStoreTest, replace_keepsTheRightsOfTheFile)
{
    Put("a", "old");
    const QString inherited = RightsOf(Native("a"));
    if (!GiveToTheOwnerAlone(Native("a"))) {
        GTEST_SKIP() << "no file system with rights";
    }
    const QString before = RightsOf(Native("a"));
    EXPECT_NE(before, inherited);
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    EXPECT_EQ(Content("a"), "new");
    EXPECT_EQ(RightsOf(Native("a")), before);
}

TEST_F(WindowsFileStoreTest, replace_readOnlyFile_isFalse_andAsBefore)
{
    Put("a", "old");
    ASSERT_TRUE(::SetFileAttributesW(Native("a").c_str(), FILE_ATTRIBUTE_READONLY));
    if (QFile file(Path("a")); file.open(QIODevice::ReadWrite)) {
        GTEST_SKIP() << "the administrator of another system may write to it";
    }
    EXPECT_FALSE(files.Replace(Path("a"), "new"));
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
    EXPECT_TRUE(::SetFileAttributesW(Native("a").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(WindowsFileStoreTest, replace_noRegularFile_isFalse_andAsBefore)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder")));
    for (const char* name : {"folder", "missing/a"}) {
        EXPECT_FALSE(files.Replace(Path(name), "new")) << name;
    }
    EXPECT_FALSE(files.Replace(QString(), "new"));
    EXPECT_EQ(Names(), QStringList{QStringLiteral("folder")});
}

TEST_F(WindowsFileStoreTest, replace_leftoverOfAKilledSave_isRemoved_nothingElse)
{
    Put("a", "old");
    Put("a.saving-abc123", "half");
    Put("a.saving-live00", "being written");
    Put("a.backup", "the user's own");
    Put("b.saving-abc123", "of another file");
    const HANDLE live = Hold("a.saving-live00", 0);
    EXPECT_TRUE(files.Replace(Path("a"), "new"));
    ::CloseHandle(live);
    EXPECT_EQ(Names(), (QStringList{QStringLiteral("a"), QStringLiteral("a.backup"),
                                    QStringLiteral("a.saving-live00"), QStringLiteral("b.saving-abc123")}));
}

// How another program may share a file that it has open.
constexpr DWORD kSharings[]{0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE};

TEST_F(WindowsFileStoreTest, fileHeldOpenForAMoment_isSavedAfterwards)
{
    for (const DWORD sharing : kSharings) {
        Put("a", "old");
        const HANDLE held = Hold("a", sharing);
        std::thread scanner([held] {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            ::CloseHandle(held);
        });
        EXPECT_TRUE(files.Replace(Path("a"), "new")) << sharing;
        scanner.join();
        EXPECT_EQ(Content("a"), "new") << sharing;
    }
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
}

TEST_F(WindowsFileStoreTest, fileHeldOpen_isFalseWithinASecond_andAsBefore)
{
    for (const DWORD sharing : kSharings) {
        Put("a", "old");
        const HANDLE held = Hold("a", sharing);
        QElapsedTimer time;
        time.start();
        const bool isSaved = files.Replace(Path("a"), "new");
        EXPECT_LT(time.elapsed(), 1000) << sharing;
        ::CloseHandle(held);
        // Some systems replace a file whose holder allows its deletion.
        EXPECT_TRUE(!isSaved || (sharing & FILE_SHARE_DELETE) != 0) << sharing;
        EXPECT_EQ(Content("a"), isSaved ? "new" : "old") << sharing;
    }
    EXPECT_EQ(Names(), QStringList{QStringLiteral("a")});
}

TEST_F(WindowsFileStoreTest, fileHeldOpenForAMoment_isReadAfterwards)
{
    Put("a", "old");
    const HANDLE held = Hold("a", 0);
    std::thread scanner([held] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        ::CloseHandle(held);
    });
    EXPECT_EQ(files.Read(Path("a"), kLimit), QByteArray("old"));
    scanner.join();
}

TEST_F(WindowsFileStoreTest, write_makesOrOverwrites)
{
    EXPECT_TRUE(files.Write(Path("temp.html"), "a longer page"));
    EXPECT_TRUE(files.Write(Path("temp.html"), "page"));
    EXPECT_EQ(Content("temp.html"), "page");
    EXPECT_FALSE(files.Write(folder.path(), "page"));
}

} // namespace
