// zt4config export and import: the flat parameter file "/home/nvram/zt4.cfg" that the daemons
// source, written from the documents or read back into the user document.
#include <cstdio>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

using Writer = int (*)(FILE*);

// The lines of the whole file, in the order printZT4ConfigFile writes them.
constexpr Writer kWholeFile[] = {
    setParameterSystemDevice,
    setParameterConfigWeb,       setParameterSystemWeb,
    setParameterConfigRadio,     setParameterSystemRadio,
    setParameterConfigWiFi,      setParameterSystemWiFi,
    setParameterConfigEthernet,  setParameterSystemEthernet,
    setParameterConfigModbus,    setParameterSystemModbus,
    setParameterConfigBACnet,    setParameterSystemBACnet,
    setParameterConfigConnector, setParameterSystemConnector,
};

int printWholeFile() {
    int result = 0;
    for (Writer writer : kWholeFile) result |= writer(stdout);
    return cli::exitFor(result);
}

// One section on stdout: a user section by its document name ("Connectors" for the connectors),
// or "system SECTION" ("Connectors", "Expert" or a section name), or "factory SECTION".
int printSection(const cli::Args& args) {
    if (args.size() == 1) {
        if (args[0] == "Connectors") return cli::exitFor(setParameterConfigConnector(stdout));
        return cli::exitFor(setParameterConfig(stdout, args[0].c_str()));
    }
    if (args.size() == 2 && args[0] == "system") {
        if (args[1] == "Connectors") return cli::exitFor(setParameterSystemConnector(stdout));
        if (args[1] == "Expert") return cli::exitFor(setParameterSystemExpert(stdout));
        return cli::exitFor(setParameterSystem(stdout, args[1].c_str()));
    }
    if (args.size() == 2 && args[0] == "factory") {
        return cli::exitFor(setParameterFactorySystem(stdout, args[1].c_str()));
    }
    return cli::usageError("export takes [--stdout], SECTION, system SECTION or factory SECTION");
}

int runExport(const cli::Args& args) {
    if (args.empty()) return cli::exitFor(printZT4ConfigFile());
    if (args.size() == 1 && args[0] == "--stdout") return printWholeFile();
    return printSection(args);
}

int runImport(const cli::Args& args) {
    if (!args.empty()) return cli::usageError("import takes no argument");
    return cli::exitFor(printZT4JSONConfigFile());
}

const cli::Registration exportCommand({"export",
                                       "export                     rewrite /home/nvram/zt4.cfg from the documents\n"
                                       "export --stdout            print the same lines instead\n"
                                       "export SECTION             the lines of a user section (Web ... BACnet,\n"
                                       "                           Connectors)\n"
                                       "export system SECTION      the lines of a system section (Device ...\n"
                                       "                           BACnet, Connectors, Expert)\n"
                                       "export factory SECTION     the lines of a factory system section",
                                       460, runExport});
const cli::Registration importCommand({"import",
                                       "import                     merge the sections read back from\n"
                                       "                           /home/nvram/zt4.cfg into the user document",
                                       461, runImport});

}  // namespace
