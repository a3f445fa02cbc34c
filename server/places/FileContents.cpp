// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/FileContents.h"

#include "places/PlacesError.h"
#include "support/DurableFile.h"

#include <fcntl.h>
#include <lzma.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <span>
#include <system_error>

namespace beacond {

namespace {

constexpr mode_t kReadableByAll = 0644;

/// The bytes of a places file while its sections are appended.
class Image
{
public:
    Image()
        : m_bytes(sizeof(layout::Header), '\0')
    {
        m_header.magic = layout::kMagic;
        m_header.version = layout::kVersion;
        m_header.sectionCount = layout::kSections;
    }

    template <typename Item>
    void Append(layout::SectionKind kind, std::span<const Item> items)
    {
        constexpr std::size_t kAlignment = alignof(std::uint64_t);
        m_bytes.resize((m_bytes.size() + kAlignment - 1) / kAlignment * kAlignment);
        m_header.sections.at(static_cast<std::size_t>(kind)) = {m_bytes.size(), items.size()};
        m_bytes.append(reinterpret_cast<const char*>(items.data()), items.size_bytes());
    }

    std::string Result() &&
    {
        m_header.size = m_bytes.size();
        std::memcpy(m_bytes.data(), &m_header, sizeof m_header);
        const std::size_t covered = offsetof(layout::Header, sections);
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(m_bytes.data());
        m_header.checksum = lzma_crc64(bytes + covered, m_bytes.size() - covered, 0);
        std::memcpy(m_bytes.data(), &m_header, sizeof m_header);
        return std::move(m_bytes);
    }

private:
    layout::Header m_header = {};
    std::string m_bytes;
};

/// The new file until it replaces the target. It has a fixed name, so that the next import overwrites one
/// that a killed import has left, and a lock, so that two imports don't write to one file.
class NewFile
{
public:
    explicit NewFile(const std::filesystem::path& target)
        : m_target(target)
        , m_name(target.string() + ".new")
        , m_link(target.string() + ".link")
        , m_file(open(m_name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR))
    {
        if (m_file < 0)
            Fail();
        if (!IsLocked()) {
            close(m_file);
            throw PlacesError("places file " + m_target.string() + ": another import is writing it");
        }
        if (ftruncate(m_file, 0) != 0) {
            Remove();
            Fail();
        }
    }

    ~NewFile() { Remove(); }

    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void Write(std::string_view bytes)
    {
        if (!WriteAll(m_file, bytes))
            Fail();
    }

    void PutInPlace()
    {
        if (fchmod(m_file, kReadableByAll) != 0 || fsync(m_file) != 0 || !KeepPrevious() ||
            rename(m_name.c_str(), m_target.c_str()) != 0)
            Fail();
        m_isInPlace = true;
        if (!SyncFolder(m_target.parent_path()))
            Fail();
    }

private:
    /// The lock counts only if the file still has its name: another import may have put it in place
    /// meanwhile.
    [[nodiscard]] bool IsLocked() const
    {
        struct stat locked = {};
        struct stat named = {};
        return flock(m_file, LOCK_EX | LOCK_NB) == 0 && fstat(m_file, &locked) == 0 &&
               lstat(m_name.c_str(), &named) == 0 && locked.st_dev == named.st_dev &&
               locked.st_ino == named.st_ino;
    }

    void Remove() const
    {
        const int error = errno;
        if (!m_isInPlace)
            unlink(m_name.c_str());
        close(m_file);
        errno = error;
    }

    /// Gives the current file a second name, so that its first name exists until the new file takes it.
    [[nodiscard]] bool KeepPrevious() const
    {
        unlink(m_link.c_str()); // a killed import has left it
        if (::link(m_target.c_str(), m_link.c_str()) != 0)
            return errno == ENOENT;
        const bool kept = rename(m_link.c_str(), (m_target.string() + ".previous").c_str()) == 0;
        const int error = errno;
        // rename() does nothing if both names belong to one file.
        unlink(m_link.c_str());
        errno = error;
        return kept;
    }

    [[noreturn]] void Fail() const
    {
        throw PlacesError("places file " + m_target.string() + ": " + std::generic_category().message(errno));
    }

    std::filesystem::path m_target;
    std::string m_name;
    std::string m_link;
    int m_file = -1;
    bool m_isInPlace = false;
};

} // namespace

layout::Text TextPool::Share(std::string_view text)
{
    const auto [known, isNew] = m_shared.try_emplace(std::string(text), 0);
    if (isNew)
        known->second = Append(text);
    return known->second;
}

layout::Text TextPool::Append(std::string_view text)
{
    if (m_bytes.size() + text.size() >= std::numeric_limits<layout::Text>::max())
        throw PlacesError("more names than a places file holds");
    const auto place = static_cast<layout::Text>(m_bytes.size());
    m_bytes.append(text).push_back('\0');
    return place;
}

void WritePlacesFile(const FileContents& contents, const std::filesystem::path& out)
{
    using Kind = layout::SectionKind;
    Image image;
    image.Append(Kind::Scopes, std::span(contents.scopes));
    image.Append(Kind::Regions, std::span(contents.regions));
    image.Append(Kind::Places, std::span(contents.places));
    image.Append(Kind::Names, std::span(contents.names));
    image.Append(Kind::Ids, std::span(contents.ids));
    image.Append(Kind::Shipped, std::span(contents.shipped));
    image.Append(Kind::Zones, std::span(contents.zones));
    image.Append(Kind::Codes, std::span(contents.codes));
    image.Append(Kind::Texts, std::span<const char>(contents.texts.Bytes()));
    NewFile file(out);
    file.Write(std::move(image).Result());
    file.PutInPlace();
}

} // namespace beacond
