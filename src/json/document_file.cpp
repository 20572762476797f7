// Reading and writing a whole document file.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "common/log.hpp"
#include "json/flags.hpp"
#include "zt4config/json.h"

json_t* readJSONFile(const char* path) noexcept {
    if (path == nullptr) {
        zt4::logError(__func__, "path NULL");
        return nullptr;
    }
    // The open only proves the file exists and may be rewritten; Jansson reads by path.
    const int fd = open(path, O_RDWR | O_SYNC, 0666);
    if (fd < 0) {
        zt4::logError(__func__, "fd INVALID for %s", path);
        return nullptr;
    }
    json_error_t error;
    json_t* document = json_load_file(path, zt4::kLoadFlags, &error);
    if (document == nullptr) zt4::logError(__func__, "FAILED reading '%s'. %s", path, error.text);
    if (fd > 0) close(fd);
    return document;
}

int writeJSONFile(const char* path, json_t* json) noexcept {
    if (path == nullptr || json == nullptr) {
        zt4::logError(__func__, path == nullptr ? "path NULL" : "json NULL");
        return -1;
    }
    const int fd = open(path, O_RDWR | O_CREAT | O_TRUNC | O_SYNC, 0666);
    if (fd < 0) {
        zt4::logError(__func__, "fd INVALID");
        return -1;
    }
    FILE* stream = fdopen(fd, "w");
    if (stream == nullptr) {
        zt4::logError(__func__, "FAILED to fdopen '%s'", path);
        close(fd);
        return -1;
    }
    int result = 0;
    // The text is made in memory and written in one piece, and the stream's error flag is
    // checked: a write that fails leaves a shorter file, never one with a hole in it, and is
    // reported, so that no caller renames it over a good document.
    char* text = json_dumps(json, zt4::kDumpFlags);
    const size_t length = text != nullptr ? std::strlen(text) : 0;
    const bool written = text != nullptr && (length == 0 || fwrite(text, 1, length, stream) == length);
    free(text);
    if (!written || ferror(stream)) {
        zt4::logError(__func__, "FAILED dumping '%s'", path);
        result = -1;
    } else if (fflush(stream) != 0) {
        zt4::logError(__func__, "FAILED dumping '%s'", path);
        result = -1;
    } else {
        sync();
    }
    // Closing the stream closes the descriptor it wraps.
    if (fclose(stream) != 0 && result == 0) {
        zt4::logError(__func__, "FAILED dumping '%s'", path);
        result = -1;
    }
    return result;
}
