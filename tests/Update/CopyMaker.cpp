#include "Update/CopyMaker.h"

#include "support/Wait.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace {

using Kind = ArchiveEntry::Kind;

struct Close {
    void operator()(archive* writer) const { archive_write_free(writer); }
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

void require(bool isDone) {
    if (!isDone) {
        throw std::runtime_error("the test's archive cannot be written");
    }
}

void setForm(archive* writer, ArchiveForm form) {
    if (form == ArchiveForm::zip) {
        require(archive_write_set_format_zip(writer) == ARCHIVE_OK);
        return;
    }
    require(archive_write_set_format_gnutar(writer) == ARCHIVE_OK);
    if (form == ArchiveForm::tarGzip) {
        require(archive_write_add_filter_gzip(writer) == ARCHIVE_OK);
    } else if (form == ArchiveForm::tarXZ) {
        require(archive_write_add_filter_xz(writer) == ARCHIVE_OK);
    } else if (form == ArchiveForm::tarZstd) {
        require(archive_write_add_filter_zstd(writer) == ARCHIVE_OK);
    }
}

void describe(archive_entry* description, const ArchiveEntry& entry) {
    archive_entry_set_pathname(description, entry.path.c_str());
    archive_entry_set_perm(description, entry.kind == Kind::file ? 0644 : 0755);
    archive_entry_set_size(description, 0);
    switch (entry.kind) {
    case Kind::file:
    case Kind::program:
        archive_entry_set_filetype(description, AE_IFREG);
        archive_entry_set_size(
            description, static_cast<la_int64_t>(entry.text.size() + entry.zeros));
        break;
    case Kind::folder:
        archive_entry_set_filetype(description, AE_IFDIR);
        break;
    case Kind::link:
        archive_entry_set_filetype(description, AE_IFLNK);
        archive_entry_set_symlink(description, entry.text.c_str());
        break;
    case Kind::secondName:
        archive_entry_set_filetype(description, AE_IFREG);
        archive_entry_set_hardlink(description, entry.text.c_str());
        break;
    case Kind::device:
        archive_entry_set_filetype(description, AE_IFCHR);
        archive_entry_set_rdevmajor(description, 1);
        archive_entry_set_rdevminor(description, 3);
        break;
    }
}

void writeBytes(archive* writer, const ArchiveEntry& entry) {
    if (entry.kind != Kind::file && entry.kind != Kind::program) {
        return;
    }
    require(archive_write_data(writer, entry.text.data(), entry.text.size()) >= 0);
    const std::string zeros(std::size_t{1} << 16, '\0');
    for (std::uint64_t left = entry.zeros; left > 0;) {
        const auto count = std::min<std::uint64_t>(left, zeros.size());
        require(archive_write_data(writer, zeros.data(), count) >= 0);
        left -= count;
    }
}

std::string informationOf(const std::string& version) {
    return fmt::format(R"({{"CFBundleShortVersionString": "{}"}})", version);
}

} // namespace

void makeArchive(const fs::path& file, const std::vector<ArchiveEntry>& entries, ArchiveForm form) {
    const std::unique_ptr<archive, Close> writer(archive_write_new());
    setForm(writer.get(), form);
    require(archive_write_open_filename(writer.get(), file.c_str()) == ARCHIVE_OK);
    for (const ArchiveEntry& entry : entries) {
        const std::unique_ptr<archive_entry, Close> description(archive_entry_new());
        describe(description.get(), entry);
        require(archive_write_header(writer.get(), description.get()) == ARCHIVE_OK);
        writeBytes(writer.get(), entry);
    }
    require(archive_write_close(writer.get()) == ARCHIVE_OK);
}

std::vector<ArchiveEntry> copyEntries(const std::string& version, const std::string& program) {
    return {{"bin", Kind::folder}, {"bin/ostrella", Kind::program, program},
        {"libexec/ostrella/SU2_CFD", Kind::program, "a solver"},
        {"share/ostrella/Info.json", Kind::file, informationOf(version)}};
}

void makeCopy(const fs::path& root, const std::string& version) {
    for (const ArchiveEntry& entry : copyEntries(version)) {
        if (entry.kind == Kind::folder) {
            continue;
        }
        writeFile(root / entry.path, entry.text);
        if (entry.kind == Kind::program) {
            fs::permissions(root / entry.path, fs::perms(0755));
        }
    }
}

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

} // namespace ostrella::test
