// Commands on whole documents: show, syntax, merge.
#include <cstring>
#include <iostream>

#include "cli.hpp"
#include "zt4config.h"

namespace {

struct DocumentChoice {
    const char* word;
    json_t* (*read)(void);
    int (*syntaxVersion)(void);
    int (*update)(json_t*);  // null for the read-only factory documents
};

const DocumentChoice kDocuments[] = {
    {"user", readJSONZT4ConfigFile, readZT4UserConfigFileSyntaxVersion, updateJSONZT4UserConfigFile},
    {"system", readJSONZT4SystemFile, readZT4SystemConfigFileSyntaxVersion, updateJSONZT4SystemFile},
    {"factory", readJSONZT4FactoryConfigFile, readZT4FactoryUserConfigFileSyntaxVersion, nullptr},
    {"factory-system", readJSONZT4FactorySystemFile, readZT4FactorySystemConfigFileSyntaxVersion,
     nullptr},
};

const DocumentChoice* findDocument(const std::string& word) {
    for (const DocumentChoice& choice : kDocuments) {
        if (word == choice.word) return &choice;
    }
    return nullptr;
}

int runShow(const cli::Args& args) {
    const DocumentChoice* document = args.size() == 1 ? findDocument(args[0]) : nullptr;
    if (document == nullptr) return cli::usageError("show takes user, system, factory or factory-system");
    return cli::printJson(document->read());
}

int runSyntax(const cli::Args& args) {
    const DocumentChoice* document = args.size() == 1 ? findDocument(args[0]) : nullptr;
    if (document == nullptr) return cli::usageError("syntax takes user, system, factory or factory-system");
    return cli::printJson(json_integer(document->syntaxVersion()));
}

// The document to merge: a file parsed as the library parses documents, or stdin for "-".
json_t* loadMergeSource(const std::string& source) {
    if (source == "-") return cli::jsonArgument("-");
    json_error_t error;
    json_t* document = json_load_file(source.c_str(), JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL, &error);
    if (document == nullptr) {
        std::cerr << "zt4config: cannot read " << source << ": " << error.text << " (line "
                  << error.line << ", column " << error.column << ")\n";
    }
    return document;
}

int runMerge(const cli::Args& args) {
    const DocumentChoice* document = args.size() == 2 ? findDocument(args[0]) : nullptr;
    if (document == nullptr || document->update == nullptr) {
        return cli::usageError("merge takes user or system, then a document file (or - for stdin)");
    }
    json_t* update = loadMergeSource(args[1]);
    if (update == nullptr) return cli::kExitFailed;
    if (!json_is_object(update)) {
        std::cerr << "zt4config: " << args[1] << " is not a JSON object\n";
        json_decref(update);
        return cli::kExitFailed;
    }
    const int result = document->update(update);
    json_decref(update);
    if (result != 0) return cli::kExitFailed;
    return cli::printJson(document->read());
}

const cli::Registration show({"show",
                              "show user|system|factory|factory-system\n"
                              "                            print a stored document",
                              100, runShow});
const cli::Registration syntax({"syntax",
                                "syntax user|system|factory|factory-system\n"
                                "                            print a document's syntax version (0 or 1)",
                                101, runSyntax});
const cli::Registration merge({"merge",
                               "merge user|system FILE     merge the top-level members of FILE (- for\n"
                               "                            stdin) into the stored document; print it",
                               102, runMerge});

}  // namespace
