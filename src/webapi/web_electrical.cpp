// The web interface's connector and expert documents: under version 1 they are translated from
// and to the stored "ElectricalConfiguration" through the translation table; under version 0 the
// stored documents already have the web shape.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/facade/connector_by_id.hpp"
#include "config/facade/dispatch.hpp"
#include "config/v0/user_sections_v0.hpp"
#include "config/v1/user_checks.hpp"
#include "config/v1/user_sections.hpp"
#include "webapi/translation.hpp"
#include "zt4config/webapi.h"

namespace {

using zt4::ConfigDocument;
using zt4::JsonRef;
using zt4::logError;
namespace web = zt4::web;

constexpr const char* kConnectorsReader = "readJSONZT4WebAPIConfigConnectorsSyntaxVersion1";
constexpr const char* kConnectorsWriter = "writeJSONZT4WebAPIConfigConnectorsSyntaxVersion1";
constexpr const char* kConnectorWriter = "writeJSONZT4WebAPIConfigConnectorByIdSyntaxVersion1";
constexpr const char* kExpertReader = "readJSONZT4WebAPIConfigExpertSyntaxVersion1";
constexpr const char* kExpertWriter = "writeJSONZT4WebAPIConfigExpertSyntaxVersion1";

json_t* connectorsV1() noexcept {
    JsonRef electrical(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1());
    if (!electrical) return nullptr;
    JsonRef connectors(json_array());
    if (!connectors) {
        logError(kConnectorsReader, "Failed to create Connectors JSON object");
        return nullptr;
    }
    json_t* stored = json_object_get(electrical.get(), "Connectors");
    if (stored != nullptr) {
        connectors.reset(web::translateArrayExactly(kConnectorsReader, web::kConnectorLevel,
                                                    web::Direction::ToWeb, stored, electrical.get()));
    }
    if (!connectors) {
        logError(kConnectorsReader, "Failed to prepare Connectors JSON response from Syntax Version 1");
        return nullptr;
    }
    return connectors.release();
}

json_t* expertV1() noexcept {
    JsonRef stored(readJSONZT4UserConfigExpertSyntaxVersion1());
    if (!stored) return nullptr;
    JsonRef expert(json_object());
    if (!expert) {
        logError(kExpertReader, "Failed to create Expert JSON object");
        return nullptr;
    }
    expert.reset(web::translateExactly(kExpertReader, web::kExpertLevel, web::Direction::ToWeb,
                                       stored.get(), nullptr));
    if (!expert) {
        logError(kExpertReader, "Failed to prepare Expert JSON response from Syntax Version 1");
        return nullptr;
    }
    return expert.release();
}

// The voltage transformer that the connectors carried, checked before anything is written so that
// a refused one leaves the document as it was; null when they carried none.
bool voltageTransformerAcceptable(const char* function, json_t* gathered) {
    json_t* transformer = json_object_get(gathered, "VoltageTransformer");
    if (transformer == nullptr) return true;
    JsonRef copy(json_deep_copy(transformer));
    std::int8_t status = 0;
    JsonRef defaults(checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1(copy.get(), &status));
    if (!copy || !defaults || status != 0) {
        logError(function, "Failed to write Voltage Transformer parameters");
        return false;
    }
    return true;
}

int writeVoltageTransformer(const char* function, json_t* gathered) {
    json_t* transformer = json_object_get(gathered, "VoltageTransformer");
    if (transformer == nullptr) return 0;
    if (writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1(transformer) != 0) {
        logError(function, "Failed to write Voltage Transformer parameters");
        return -1;
    }
    return 0;
}

// The stored form of web connectors (an array of them, or one): the connectors and the gathered
// section-wide members, or false after the messages.
bool storedConnectors(const char* function, json_t* json, bool isArray, JsonRef& connectors, JsonRef& gathered) {
    gathered.reset(json_object());
    if (!gathered) {
        logError(function, "Failed to create Voltage Transformer JSON");
        return false;
    }
    connectors.reset(isArray ? web::translateArrayExactly(function, web::kConnectorLevel, web::Direction::ToStored,
                                                          json, gathered.get())
                             : web::translateExactly(function, web::kConnectorLevel, web::Direction::ToStored,
                                                     json, gathered.get()));
    if (!connectors) {
        logError(function, "Failed to prepare Connectors JSON response to Syntax Version 1");
        return false;
    }
    return voltageTransformerAcceptable(function, gathered.get());
}

int connectorsWriteV1(json_t* json) noexcept {
    if (json == nullptr) {
        logError(kConnectorsWriter, "json NULL");
        return -1;
    }
    JsonRef connectors;
    JsonRef gathered;
    if (!storedConnectors(kConnectorsWriter, json, true, connectors, gathered)) return -1;
    if (writeJSONZT4UserConfigConnectorsSyntaxVersion1(connectors.get()) != 0) return -1;
    return writeVoltageTransformer(kConnectorsWriter, gathered.get());
}

int connectorWriteV1(json_t* json, std::uint8_t id) noexcept {
    if (json == nullptr) {
        logError(kConnectorWriter, "json NULL");
        return -1;
    }
    JsonRef connector;
    JsonRef gathered;
    if (!storedConnectors(kConnectorWriter, json, false, connector, gathered)) return -1;
    if (writeJSONZT4UserConfigConnectorByIdSyntaxVersion1(connector.get(), id) != 0) return -1;
    return writeVoltageTransformer(kConnectorWriter, gathered.get());
}

int expertWriteV1(json_t* json) noexcept {
    if (json == nullptr) {
        logError(kExpertWriter, "json NULL");
        return -1;
    }
    JsonRef expert(json_object());
    if (!expert) {
        logError(kExpertWriter, "Failed to create Expert JSON object");
        return -1;
    }
    expert.reset(web::translateExactly(kExpertWriter, web::kExpertLevel, web::Direction::ToStored, json, nullptr));
    if (!expert) {
        logError(kExpertWriter, "Failed to prepare Expert JSON response to Syntax Version 1");
        return -1;
    }
    return writeJSONZT4UserConfigExpertSyntaxVersion1(expert.get());
}

}  // namespace

extern "C" {

json_t* readJSONZT4WebAPIConfigConnectors(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration connectors via Web API");
    return zt4::dispatch<readJSONZT4UserConfigConnectorsSyntaxVersion0, connectorsV1>(__func__, ConfigDocument::User);
}

json_t* readJSONZT4WebAPIConfigConnectorById(uint8_t id) noexcept {
    zt4::logInfo(__func__, "Read User configuration connector %u via Web API", static_cast<unsigned>(id));
    return zt4::connectorById(__func__, id, readJSONZT4WebAPIConfigConnectors);
}

json_t* readJSONZT4WebAPIConfigExpert(void) noexcept {
    zt4::logInfo(__func__, "Read User configuration Expert via Web API");
    return zt4::dispatch<readJSONZT4UserConfigExpertSyntaxVersion0, expertV1>(__func__, ConfigDocument::User);
}

int writeJSONZT4WebAPIConfigConnectors(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration Connectors via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigConnectorsSyntaxVersion0, connectorsWriteV1>(
        __func__, ConfigDocument::User, json);
}

int writeJSONZT4WebAPIConfigConnectorById(json_t* json, uint8_t id) noexcept {
    zt4::logInfo(__func__, "Write User configuration Connector %u via Web API", static_cast<unsigned>(id));
    return zt4::dispatch<writeJSONZT4UserConfigConnectorByIdSyntaxVersion0, connectorWriteV1>(
        __func__, ConfigDocument::User, json, id);
}

int writeJSONZT4WebAPIConfigExpert(json_t* json) noexcept {
    zt4::logInfo(__func__, "Write User configuration Expert via Web API");
    return zt4::dispatch<writeJSONZT4UserConfigExpertSyntaxVersion0, expertWriteV1>(
        __func__, ConfigDocument::User, json);
}

}  // extern "C"
