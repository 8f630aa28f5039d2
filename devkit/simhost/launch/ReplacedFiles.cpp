#include "simhost/launch/ReplacedFiles.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/launch/FileChanges.h"
#include "simhost/report/WholeFile.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

bool IsMissing(const std::filesystem::path& file) {
    const bool isThere = GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
    return !isThere && (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND);
}

// A file that is there and cannot be read is not a missing one: it could never be put back.
std::optional<std::string> ContentsOf(const std::filesystem::path& file) {
    if (IsMissing(file)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string contents;
    char part[4096];
    while (stream.read(part, sizeof part) || stream.gcount() > 0) {
        contents.append(part, static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.eof() || stream.bad()) {
        throw std::runtime_error("cannot read " + Utf8(file.wstring()) + ", so no run could put it back afterwards");
    }
    return contents;
}

void Set(const FileContents& wanted) {
    if (wanted.contents) {
        MakeFolder(wanted.file.parent_path());
        WriteWholeFile(wanted.file, *wanted.contents);
        return;
    }
    RemoveFile(wanted.file);
    // Only when nobody else has anything in it.
    std::error_code ignored;
    std::filesystem::remove(wanted.file.parent_path(), ignored);
}

// In a binary form of JSON, because the contents may be any bytes. Under its name it is always whole.
void WriteJournal(const std::filesystem::path& journal, const std::vector<FileContents>& before) {
    Json entries = Json::array();
    for (const FileContents& one : before) {
        entries.push_back(
            {{"file", Utf8(one.file.wstring())}, {"before", one.contents ? Json(*one.contents) : Json()}});
    }
    const std::vector<std::uint8_t> bytes = Json::to_cbor(entries);
    std::filesystem::path whole = journal;
    whole += L".new";
    WriteWholeFile(whole, {bytes.begin(), bytes.end()});
    MoveFileTo(whole, journal);
}

std::vector<FileContents> ReadJournal(const std::filesystem::path& journal, const std::string& bytes) {
    const Json entries = Json::from_cbor(bytes, true, false);
    std::vector<FileContents> before;
    for (const Json& entry : entries) {
        if (!entry.is_object() || !entry.contains("before") || !entry.value("file", Json()).is_string()) {
            break;
        }
        const Json& contents = entry["before"];
        before.push_back({Wide(entry["file"].get<std::string>()), contents.is_string()
                                                                      ? std::optional(contents.get<std::string>())
                                                                      : std::optional<std::string>()});
    }
    if (!entries.is_array() || before.size() != entries.size()) {
        throw std::runtime_error(Utf8(journal.wstring()) +
                                 " is not what a run keeps there; look at it, and remove it when nobody needs it");
    }
    return before;
}

}  // namespace

ReplacedFiles::ReplacedFiles(std::filesystem::path journal, const std::vector<FileContents>& during)
    : mJournal(std::move(journal)) {
    // An earlier run of this process may have left it: never written over.
    PutBack(mJournal);
    std::vector<FileContents> before;
    before.reserve(during.size());
    for (const FileContents& one : during) {
        before.push_back({one.file, ContentsOf(one.file)});
    }
    WriteJournal(mJournal, before);
    try {
        for (const FileContents& one : during) {
            Set(one);
        }
    } catch (...) {
        PutBack(mJournal);
        throw;
    }
}

ReplacedFiles::~ReplacedFiles() {
    try {
        PutBack(mJournal);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
    }
}

void ReplacedFiles::PutBack(const std::filesystem::path& journal) {
    const std::optional<std::string> bytes = ContentsOf(journal);
    if (!bytes) {
        return;
    }
    std::string failed;
    for (const FileContents& before : ReadJournal(journal, *bytes)) {
        try {
            if (ContentsOf(before.file) != before.contents) {
                Set(before);
            }
        } catch (const std::exception& error) {
            failed += (failed.empty() ? "" : "; ") + std::string(error.what());
        }
    }
    if (!failed.empty()) {
        throw std::runtime_error(failed + ". What was there before a run lies in " + Utf8(journal.wstring()) +
                                 ", and the next run puts it back");
    }
    RemoveFile(journal);
}

}  // namespace simhost
