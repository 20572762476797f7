// The FRAM device file, opened for one operation: every block moves in one positioned read or
// write of exactly its bytes, so a read never pulls the whole memory and a write never touches a
// byte outside its block. Failures and traces are logged under the calling operation's name.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace zt4::fram {

// How the transfer messages quote the device path: the energy operations in double quotes, the
// counter operations in single quotes.
enum class Quote { Double, Single };

// One block transfer between a buffer and the FRAM.
struct Transfer {
    const char* name;    // the FRAM area, printed last in the messages
    uint32_t offset;     // byte offset in the FRAM
    uint32_t registers;  // register count printed by the messages
    uint32_t words;      // 16-bit words per register
    Quote quote;
    std::size_t bytes() const { return static_cast<std::size_t>(registers) * words * 2; }
};

class Device {
public:
    enum class Access {
        Read,    // the file must exist
        Update,  // read and write, without truncation, created when missing, synchronous writes
    };

    // Opens the device file under the current root; a failure is logged under `function`.
    Device(const char* function, Access access);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    const std::string& path() const { return path_; }

    // Reads the block into `into` (transfer.bytes() bytes); a short read is logged and fails.
    bool read(const Transfer& transfer, void* into);
    // Writes the block from `from`; a short write is logged and fails. The messages carry
    // `function` when given (an internal step of the operation), else the operation's name.
    bool write(const Transfer& transfer, const void* from, const char* function = nullptr);

    // Raw positioned transfers that log nothing: the number of bytes moved (short at the end of
    // the file or on an error; errno then tells why).
    std::size_t readAt(uint32_t offset, void* into, std::size_t size);
    std::size_t writeAt(uint32_t offset, const void* from, std::size_t size);

private:
    const char* function_;
    std::string path_;
    int descriptor_ = -1;
};

}  // namespace zt4::fram
