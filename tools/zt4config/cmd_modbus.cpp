// zt4config modbus map|get|set|dump and zt4config data connectors: the register map, one
// register of an image file, the dump of a block, the connector data document.
//
// An image file holds the register image as the metering daemon keeps it (3318 little-endian
// 16-bit words, 6636 bytes). A shorter file is no image: the library is handed none, so reads
// and writes fail with its own message, and the file is left as it was. A write changes only the
// bytes of the register it names.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "cli.hpp"
#include "zt4config.h"

namespace {

// The blocks whose 2-word registers are unsigned 32-bit counters; the others hold floats.
constexpr unsigned kIntegerBlocks[] = {17, 18, 19, 20, 21, 22, 23, 25, 26, 27, 38, 39, 41, 43, 46};
constexpr unsigned kLastDataBlock = ZT4_MODBUS_BLOCK_COUNT - 2;
constexpr unsigned kMacBlock = 2;
constexpr unsigned kModeBlock = 3;

bool isIntegerBlock(unsigned block) {
    for (unsigned b : kIntegerBlocks) {
        if (b == block) return true;
    }
    return false;
}

struct ImageFile {
    std::string path;
    std::vector<uint16_t> words = std::vector<uint16_t>(ZT4_MODBUS_IMAGE_WORDS, 0);
    bool complete = false;
    // The image to hand to the library: none when the file is too short to hold one.
    uint16_t* image() { return complete ? words.data() : nullptr; }
};

// Reads the first 6636 bytes of the file; false (reported) when the file cannot be read.
bool loadImage(const std::string& path, ImageFile& file) {
    file.path = path;
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        std::cerr << "zt4config: cannot open image " << path << ": " << std::strerror(errno) << "\n";
        return false;
    }
    size_t got = 0;
    auto* bytes = reinterpret_cast<unsigned char*>(file.words.data());
    while (got < ZT4_MODBUS_IMAGE_BYTES) {
        const ssize_t n = read(fd, bytes + got, ZT4_MODBUS_IMAGE_BYTES - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        got += static_cast<size_t>(n);
    }
    close(fd);
    file.complete = got == ZT4_MODBUS_IMAGE_BYTES;
    if (!file.complete) {
        std::cerr << "zt4config: image " << path << " holds " << got << " bytes, a register image "
                  << ZT4_MODBUS_IMAGE_BYTES << "\n";
    }
    return true;
}

// Writes words [address, address + count) of the image back to their place in the file.
bool storeWords(const ImageFile& file, uint32_t address, uint32_t count) {
    const int fd = open(file.path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        std::cerr << "zt4config: cannot open image " << file.path << ": " << std::strerror(errno) << "\n";
        return false;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(file.words.data() + address);
    const ssize_t n = pwrite(fd, bytes, 2u * count, static_cast<off_t>(2u * address));
    const bool ok = n == static_cast<ssize_t>(2u * count) && fsync(fd) == 0;
    close(fd);
    if (!ok) std::cerr << "zt4config: cannot write image " << file.path << "\n";
    return ok;
}

// Splits "--image FILE" off the arguments; false when it is missing or has no value.
bool imageOption(const cli::Args& args, cli::Args& rest, std::string& path) {
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--image") {
            if (i + 1 >= args.size()) return false;
            path = args[++i];
        } else {
            rest.push_back(args[i]);
        }
    }
    return !path.empty();
}

bool numberIn(const std::string& text, long long low, long long high, long long& value) {
    return cli::parseNumber(text, value) && value >= low && value <= high;
}

struct Register {
    unsigned block;
    uint8_t connector, channel;
};

// BLOCK CONNECTOR CHANNEL: a data block (0 to 73), connector 0 to 5, channel, slot or selector 0 to 5.
bool parseRegister(const cli::Args& args, Register& reg) {
    long long block, connector, channel;
    if (!numberIn(args[0], 0, kLastDataBlock, block) || !numberIn(args[1], 0, 5, connector) ||
        !numberIn(args[2], 0, 5, channel)) {
        return false;
    }
    reg = {static_cast<unsigned>(block), static_cast<uint8_t>(connector), static_cast<uint8_t>(channel)};
    return true;
}

json_t* realOrNull(double value) { return std::isfinite(value) ? json_real(value) : json_null(); }

json_t* registerValue(uint16_t* image, const Register& r, uint32_t address) {
    const auto index = static_cast<uint8_t>(r.block);
    switch (getModbusSizeRg(index)) {
        case 1:
            if (r.block == 0) return json_integer(GetModbusSWVersion(image));
            if (r.block == 1) return json_integer(GetModbusVersion(image));
            if (r.block == kModeBlock) return json_integer(GetModbusInfoConnector(image, r.connector, r.channel));
            return image ? json_integer(image[address]) : nullptr;
        case 4: return realOrNull(GetModbusData64(image, index, r.connector, r.channel));
        default:
            if (isIntegerBlock(r.block)) {
                return json_integer(GetModbusDataInteger(image, index, r.connector, r.channel));
            }
            return realOrNull(GetModbusData(image, index, r.connector, r.channel));
    }
}

int runGet(const cli::Args& rest, ImageFile& file) {
    Register r;
    if (rest.size() != 3 || !parseRegister(rest, r)) {
        return cli::usageError("modbus get takes BLOCK (0-73) CONNECTOR (0-5) CHANNEL (0-5) --image FILE");
    }
    const uint32_t address = getModbusAddr(r.block, r.connector, r.channel);
    json_t* value = registerValue(file.image(), r, address);
    if (!file.complete) {
        json_decref(value);
        return cli::kExitFailed;
    }
    json_t* result = json_object();
    json_object_set_new(result, "Block", json_integer(r.block));
    json_object_set_new(result, "Name", json_string(getModbusNameRg(static_cast<uint8_t>(r.block))));
    json_object_set_new(result, "Address", json_integer(address));
    json_object_set_new(result, "Value", value);
    json_object_set_new(result, "Unit", json_string(getModbusUnitRg(static_cast<uint8_t>(r.block))));
    return cli::printJson(result);
}

// Stores the value through the register's accessor; `words` is how many words it may change.
bool setValue(uint16_t* image, const Register& r, const std::string& text, uint32_t& words) {
    const auto index = static_cast<uint8_t>(r.block);
    long long integer;
    if (r.block == kMacBlock) {
        if (text.size() != 12 || text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return false;
        }
        words = 3;
        SetModbusMAC(image, text.c_str());
        return true;
    }
    const uint32_t size = getModbusSizeRg(index);
    if (size == 1) {
        if (!numberIn(text, 0, 0xFFFF, integer)) return false;
        const auto word = static_cast<uint16_t>(integer);
        words = 1;
        if (r.block == 0) SetModbusSWVersion(image, word);
        else if (r.block == 1) SetModbusVersion(image, word);
        else SetModbusInfoConnector(image, r.connector, r.channel, word);
        return true;
    }
    if (size == 2 && isIntegerBlock(r.block)) {
        if (!numberIn(text, 0, 0xFFFFFFFFLL, integer)) return false;
        words = 2;
        SetModbusDataInteger(image, index, r.connector, r.channel, static_cast<uint32_t>(integer));
        return true;
    }
    char* end = nullptr;
    errno = 0;
    const double real = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE) return false;
    words = size;
    if (size == 4) SetModbusData64(image, index, r.connector, r.channel, real);
    else SetModbusData(image, index, r.connector, r.channel, static_cast<float>(real));
    return true;
}

int runSet(const cli::Args& rest, ImageFile& file) {
    Register r;
    if (rest.size() != 4 || !parseRegister(rest, r)) {
        return cli::usageError("modbus set takes BLOCK (0-73) CONNECTOR (0-5) CHANNEL (0-5) VALUE --image FILE");
    }
    uint32_t words = 0;
    if (!setValue(file.image(), r, rest[3], words)) {
        return cli::usageError("modbus set: '" + rest[3] + "' is not a value for block " + rest[0]);
    }
    if (!file.complete) {
        if (isIntegerBlock(r.block)) {
            // The integer setter is silent on a missing image: say it here.
            std::cerr << "zt4config: no register image, nothing stored\n";
        }
        return cli::kExitFailed;
    }
    const uint32_t address = r.block == kMacBlock ? getModbusAddrBaseRg(kMacBlock)
                                                  : getModbusAddr(r.block, r.connector, r.channel);
    if (address > ZT4_MODBUS_IMAGE_WORDS - words) return cli::kExitFailed;  // refused and logged
    return storeWords(file, address, words) ? cli::kExitOk : cli::kExitFailed;
}

int runDump(const cli::Args& rest, ImageFile& file) {
    long long block;
    if (rest.size() != 1 || !numberIn(rest[0], 0, ZT4_MODBUS_BLOCK_COUNT - 1, block)) {
        return cli::usageError("modbus dump takes BLOCK (0-74) --image FILE");
    }
    const auto index = static_cast<uint8_t>(block);
    if (getModbusSizeRg(index) == 4) {
        DisplayZT4Data64(file.image(), index);
    } else {
        DisplayZT4Data(file.image(), index);
    }
    return file.complete ? cli::kExitOk : cli::kExitFailed;
}

json_t* mapJson() {
    json_t* rows = json_array();
    for (unsigned i = 0; i < ZT4_MODBUS_BLOCK_COUNT; ++i) {
        const ModbusRegisterBlock& b = ModbusBase[i];
        json_t* row = json_object();
        json_object_set_new(row, "Block", json_integer(i));
        json_object_set_new(row, "Name", json_string(b.name));
        json_object_set_new(row, "Base", json_integer(b.base));
        json_object_set_new(row, "Count", json_integer(b.count));
        json_object_set_new(row, "Words", json_integer(b.words));
        json_object_set_new(row, "Bytes", json_integer(b.bytes));
        json_object_set_new(row, "Unit", json_string(b.unit));
        json_array_append_new(rows, row);
    }
    return rows;
}

void printMarkdown() {
    std::cout << "| block | name | base | count | words | bytes | unit |\n"
                 "|---|---|---|---|---|---|---|\n";
    for (unsigned i = 0; i < ZT4_MODBUS_BLOCK_COUNT; ++i) {
        const ModbusRegisterBlock& b = ModbusBase[i];
        std::cout << "| " << i << " | " << b.name << " | " << b.base << " | " << b.count << " | "
                  << b.words << " | " << b.bytes << " | " << b.unit << " |\n";
    }
}

int runModbus(const cli::Args& args) {
    if (args.empty()) return cli::usageError("modbus takes map, get, set or dump");
    const std::string& action = args[0];
    const cli::Args words(args.begin() + 1, args.end());
    if (action == "map") {
        if (words.empty()) return cli::printJson(mapJson());
        if (words.size() == 1 && words[0] == "--markdown") {
            printMarkdown();
            return cli::kExitOk;
        }
        return cli::usageError("modbus map takes only --markdown");
    }
    cli::Args rest;
    std::string path;
    if (!imageOption(words, rest, path)) return cli::usageError("modbus " + action + " needs --image FILE");
    if (action != "get" && action != "set" && action != "dump") {
        return cli::usageError("modbus: unknown action '" + action + "' (map, get, set, dump)");
    }
    ImageFile file;
    if (!loadImage(path, file)) return cli::kExitFailed;
    if (action == "get") return runGet(rest, file);
    if (action == "set") return runSet(rest, file);
    return runDump(rest, file);
}

int runData(const cli::Args& args) {
    cli::Args rest;
    std::string path;
    if (!imageOption(args, rest, path) || rest.size() != 1 || rest[0] != "connectors") {
        return cli::usageError("data takes connectors --image FILE");
    }
    ImageFile file;
    if (!loadImage(path, file)) return cli::kExitFailed;
    zt4Data data;
    std::memset(&data, 0, sizeof data);
    if (readZT4AllConfig(&data) != 0) return cli::kExitFailed;
    return cli::printJson(readJSONZT4DataConnector(file.image(), &data));
}

const cli::Registration modbus({"modbus",
                                "modbus map [--markdown]   the register map (JSON, or a Markdown table)\n"
                                "modbus get BLOCK CONNECTOR CHANNEL --image FILE\n"
                                "                          one register of a register image file\n"
                                "modbus set BLOCK CONNECTOR CHANNEL VALUE --image FILE\n"
                                "                          store one register (only its bytes change)\n"
                                "modbus dump BLOCK --image FILE\n"
                                "                          log the dump of one block (to stderr)",
                                700, runModbus});

const cli::Registration data({"data",
                              "data connectors --image FILE\n"
                              "                          the connector data document of an image",
                              710, runData});

}  // namespace
