// zt4config calibration: the calibration files in their JSON form. Each subcommand is one row of
// kSubcommands.
#include <cstring>
#include <iostream>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

struct CalibrationKind {
    const char* word;
    int kind;
};

constexpr CalibrationKind kKinds[] = {
    {"standard", ZT4_CALIBRATION_STANDARD},
    {"threephase", ZT4_CALIBRATION_THREEPHASE},
    {"monophase", ZT4_CALIBRATION_MONOPHASE},
};

// The kind a word names; false when it names none.
bool kindOf(const std::string& word, int& kind) {
    for (const CalibrationKind& each : kKinds) {
        if (word == each.word) {
            kind = each.kind;
            return true;
        }
    }
    return false;
}

// A JSON document from a file, or from stdin for "-".
json_t* loadDocument(const std::string& fileOrDash) {
    if (fileOrDash == "-") return cli::jsonArgument("-");
    json_error_t error;
    json_t* value = json_load_file(fileOrDash.c_str(), JSON_REJECT_DUPLICATES, &error);
    if (value == nullptr) {
        std::cerr << "zt4config: " << fileOrDash << ": " << error.text << " (line " << error.line
                  << ", column " << error.column << ")\n";
    }
    return value;
}

// calibration show [KIND]: {"Connector": [...]} of the kind's file (standard by default).
int runShow(const cli::Args& args) {
    int kind = ZT4_CALIBRATION_STANDARD;
    if (args.size() > 2 || (args.size() == 2 && !kindOf(args[1], kind))) {
        return cli::usageError("calibration show [standard|threephase|monophase]");
    }
    json_t* object = json_object();
    if (readConfigCalibration(object, kind) != 0) {
        json_decref(object);
        return cli::kExitFailed;
    }
    return cli::printJson(object);
}

// calibration write KIND FILE|-: writes the kind's file from a {"Connector": [...]} document.
int runWrite(const cli::Args& args) {
    int kind = ZT4_CALIBRATION_STANDARD;
    if (args.size() != 3 || !kindOf(args[1], kind)) {
        return cli::usageError("calibration write standard|threephase|monophase FILE|-");
    }
    json_t* document = loadDocument(args[2]);
    if (document == nullptr) return cli::kExitFailed;
    const int result = writeConfigCalibration(document, kind);
    json_decref(document);
    return cli::exitFor(result);
}

// calibration init KIND: writes the kind's file from the record the metering daemon starts from
// (readZT4AllConfig): the coefficients the device holds now, whichever files they came from.
int runInit(const cli::Args& args) {
    int kind = ZT4_CALIBRATION_STANDARD;
    if (args.size() != 2 || !kindOf(args[1], kind)) {
        return cli::usageError("calibration init standard|threephase|monophase");
    }
    zt4Data data;
    std::memset(&data, 0, sizeof data);
    if (readZT4AllConfig(&data) != 0) return cli::kExitFailed;
    return cli::exitFor(writeConfigInitCalibration(data.connectors, kind));
}

struct Subcommand {
    const char* word;
    int (*run)(const cli::Args& args);  // args[0] is the subcommand's word
};

const Subcommand kSubcommands[] = {
    {"show", runShow},
    {"write", runWrite},
    {"init", runInit},
};

int runCalibration(const cli::Args& args) {
    if (args.empty()) return cli::usageError("calibration needs a subcommand");
    for (const Subcommand& subcommand : kSubcommands) {
        if (args[0] == subcommand.word) return subcommand.run(args);
    }
    return cli::usageError("unknown calibration subcommand " + args[0]);
}

constexpr const char* kSynopsis =
    "calibration show [KIND]   a calibration file as JSON (KIND: standard,\n"
    "                          threephase or monophase; standard by default)\n"
    "calibration write KIND FILE|-\n"
    "                          write a calibration file from a JSON document\n"
    "calibration init KIND     write a calibration file from the record that\n"
    "                          the documents and calibration files fill";

const cli::Registration registration({"calibration", kSynopsis, 620, runCalibration});

}  // namespace
