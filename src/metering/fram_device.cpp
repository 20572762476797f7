#include "metering/fram_device.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "common/log.hpp"
#include "common/path.hpp"
#include "metering/fram_layout.hpp"

namespace zt4::fram {
namespace {

constexpr std::size_t kWordBytes = 2;

int openFlags(Device::Access access) {
    if (access == Device::Access::Read) return O_RDONLY | O_CLOEXEC;
    return O_RDWR | O_CREAT | O_SYNC | O_CLOEXEC;
}

long offsetArgument(uint32_t offset) { return static_cast<long>(offset); }

}  // namespace

Device::Device(const char* function, Access access)
    : function_(function), path_(resolvePath(kDevicePath)) {
    do {
        descriptor_ = ::open(path_.c_str(), openFlags(access), 0644);
    } while (descriptor_ < 0 && errno == EINTR);
    if (descriptor_ >= 0) return;
    const int error = errno;
    std::perror("fopen /sys/bus/i2c/devices/0-0050/eeprom");
    logError(function_, "FAILED to fopen '%s'. %s", path_.c_str(), std::strerror(error));
}

Device::~Device() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t Device::readAt(uint32_t offset, void* into, std::size_t size) {
    std::size_t done = 0;
    auto* bytes = static_cast<unsigned char*>(into);
    while (done < size) {
        const ssize_t got = ::pread(descriptor_, bytes + done, size - done,
                                    static_cast<off_t>(offset) + static_cast<off_t>(done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::size_t Device::writeAt(uint32_t offset, const void* from, std::size_t size) {
    std::size_t done = 0;
    const auto* bytes = static_cast<const unsigned char*>(from);
    while (done < size) {
        const ssize_t put = ::pwrite(descriptor_, bytes + done, size - done,
                                     static_cast<off_t>(offset) + static_cast<off_t>(done));
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) break;
        done += static_cast<std::size_t>(put);
    }
    return done;
}

bool Device::read(const Transfer& transfer, void* into) {
    const std::size_t bytes = transfer.bytes();
    const long offset = offsetArgument(transfer.offset);
    if (readAt(transfer.offset, into, bytes) != bytes) {
        if (transfer.quote == Quote::Double) {
            logError(function_, "FAILED to read %u registers (%zu bytes) @ offset %ld in \"%s\" %s",
                     transfer.registers, bytes, offset, path_.c_str(), transfer.name);
        } else {
            logError(function_, "FAILED to read %u registers (%zu bytes) @ offset %ld in '%s' %s",
                     transfer.registers, bytes, offset, path_.c_str(), transfer.name);
        }
        return false;
    }
    if (debugLevel() > 1) {
        const std::size_t items = bytes / kWordBytes;
        if (transfer.quote == Quote::Double) {
            logInfo(function_, "read %zu nmemb of %zu bytes (%zu bytes) @ offset %ld in \"%s\" %s",
                    items, kWordBytes, bytes, offset, path_.c_str(), transfer.name);
        } else {
            logInfo(function_, "read %zu nmemb of %zu bytes (%zu bytes) @ offset %ld in '%s' %s",
                    items, kWordBytes, bytes, offset, path_.c_str(), transfer.name);
        }
    }
    return true;
}

bool Device::write(const Transfer& transfer, const void* from, const char* function) {
    const char* name = function != nullptr ? function : function_;
    const std::size_t bytes = transfer.bytes();
    const long offset = offsetArgument(transfer.offset);
    if (writeAt(transfer.offset, from, bytes) != bytes) {
        if (transfer.quote == Quote::Double) {
            logError(name, "FAILED to write %u registers (%zu bytes) @ offset %ld in \"%s\" %s",
                     transfer.registers, bytes, offset, path_.c_str(), transfer.name);
        } else {
            logError(name, "FAILED to write %u registers (%zu bytes) @ offset %ld in '%s' %s",
                     transfer.registers, bytes, offset, path_.c_str(), transfer.name);
        }
        return false;
    }
    if (debugLevel() > 1) {
        const std::size_t items = bytes / kWordBytes;
        if (transfer.quote == Quote::Double) {
            logInfo(name, "write %zu elmt of %zu bytes (%zu bytes) @ offset %ld in \"%s\" %s",
                    items, kWordBytes, bytes, offset, path_.c_str(), transfer.name);
        } else {
            logInfo(name, "write %zu elmt of %zu bytes (%zu bytes) @ offset %ld in '%s' %s",
                    items, kWordBytes, bytes, offset, path_.c_str(), transfer.name);
        }
    }
    return true;
}

}  // namespace zt4::fram
