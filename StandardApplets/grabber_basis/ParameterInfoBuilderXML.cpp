#include "StandardApplets/grabber_basis/ParameterInfoBuilderXML.h"

#include <algorithm>
#include <locale>
#include <map>
#include <utility>

#include "StandardApplets/grabber_basis/FabrixBoard.h"
#include "StandardApplets/grabber_basis/Fg_StdMaster.h"
#include "StandardApplets/grabber_basis/Fx3ParameterHeader.h"
#include "StandardApplets/grabber_basis/ParameterInfoGeneratorXML.h"
#include "StandardApplets/grabber_basis/XmlFilters.h"

namespace {

constexpr size_t kUsualDocument = 96 * 1024;  // bytes; longer ones grow
constexpr const char* kRootName = "Root";
constexpr const char* kDirectRegisterPrefix = "DRA_";
constexpr const char* kGenApi = "http://www.genicam.org/GenApi/Version_1_0";
constexpr const char* kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

constexpr bool isDescribedAsNode(FX3ParamType type) {
    return type == TYPE_INT || type == TYPE_DOUBLE || type == TYPE_ENUM;
}

uint64_t widened(int value) { return static_cast<uint64_t>(int64_t{value}); }

/// \return symbolic names by value; of entries with the same value the last one stays
std::map<int, std::string> entriesOf(const Fx3ENUMData& data, size_t port) {
    std::map<int, std::string> entries;
    for (size_t k = 0; k < data.valueDefNameTable[port].size(); ++k) {
        const std::optional<std::string>& name = data.valueDefNameTable[port][k];
        if (name) entries[data.valueIdTable[port][k]] = *name;
    }
    return entries;
}

}  // namespace

// ---- Categories

ParameterInfoBuilderXML::Category::Category(const std::string& name, Category* parent) : mName(name) {
    if (parent != nullptr) parent->addChild(this);
}

ParameterInfoBuilderXML::Category* ParameterInfoBuilderXML::Category::getChild(const std::string& name) const {
    const auto child =
        std::find_if(mChildren.begin(), mChildren.end(), [&](const auto& each) { return each->mName == name; });
    return child == mChildren.end() ? nullptr : child->get();
}

bool ParameterInfoBuilderXML::Category::hasFeature(const std::string& feature) const {
    return std::find(mFeatures.begin(), mFeatures.end(), feature) != mFeatures.end();
}

// ---- Document

ParameterInfoBuilderXML::ParameterInfoBuilderXML(Fx3ParameterHeader& header, Fg_StdMaster& master, int port)
    : mParamHeader(header),
      mMaster(master),
      mPort(port),
      mRootCategory(std::make_unique<Category>(kRootName, nullptr)) {}

ParameterInfoBuilderXML::~ParameterInfoBuilderXML() = default;

std::string ParameterInfoBuilderXML::build() {
    std::string text;
    text.reserve(kUsualDocument);
    std::ostringstream out(std::move(text));
    // A host's locale may group the digits of numbers.
    out.imbue(std::locale::classic());
    // Without this a stream swallows a failed allocation, and the document would lack something unnoticed.
    out.exceptions(std::ios::badbit);
    buildXMLHeader(out);
    startAppletDescription(out);
    selectParameters();
    for (int i = 0; i < mParamHeader.getParamCount(); ++i) {
        const Fx3Parameter& param = *mParamHeader.getParameterAt(i);
        if (mParameters.contains(param.description.defineName)) buildParamDescr(out, param);
    }
    buildCategories(out);
    stopAppletDescription(out);
    return std::move(out).str();
}

void ParameterInfoBuilderXML::buildXMLHeader(std::ostringstream& out) {
    out << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n\n";
}

void ParameterInfoBuilderXML::startAppletDescription(std::ostringstream& out) {
    Fg_FabrixBoard& board = *mMaster.getFxBoard();
    out << "<RegisterDescription\n"
        << "ModelName=\"" << xmlStringFilter(mMaster.getCameraType()) << "\"\n"
        << "VendorName=\"Tavolane\"\n"
        << "StandardNameSpace=\"None\"\n"
        << "SchemaMajorVersion=\"1\"\n"
        << "SchemaMinorVersion=\"0\"\n"
        << "SchemaSubMinorVersion=\"1\"\n"
        << "MajorVersion=\"" << board.getAppletVersion() << "\"\n"
        << "MinorVersion=\"" << board.getAppletRevision() << "\"\n"
        << "SubMinorVersion=\"0\"\n"
        << "ProductGuid=\"0\"\n"
        << "VersionGuid=\"0\"\n"
        << "xmlns=\"" << kGenApi << "\"\n"
        << "xmlns:xsi=\"" << kSchemaInstance << "\"\n"
        << "xsi:schemaLocation=\"" << kGenApi << " GenApiSchema_Version_1_0.xsd\">\n";
}

void ParameterInfoBuilderXML::selectParameters() {
    for (int i = 0; i < mParamHeader.getParamCount(); ++i) {
        const Fx3Parameter& param = *mParamHeader.getParameterAt(i);
        if (!isInTree(param) || !isDescribedAsNode(param.data.type)) continue;
        std::string name = xmlNameFilter(param.description.defineName);
        if (!name.starts_with(kDirectRegisterPrefix)) mParameters.insert(std::move(name));
    }
}

/// \return whether the parameter is visible on the port and has a group there
bool ParameterInfoBuilderXML::isInTree(const Fx3Parameter& param) const {
    const auto port = static_cast<size_t>(mPort);
    return param.access.visibilityFlag[port] != 0 && param.description.group[port] != nullptr;
}

void ParameterInfoBuilderXML::buildParamDescr(std::ostringstream& out, const Fx3Parameter& param) {
    if (!isInTree(param) || !writeNodes(out, param)) return;
    addFeatureToCategory(param.description.group[static_cast<size_t>(mPort)]->name, param.description.defineName);
    out << '\n';
}

/// \return whether the type has nodes
bool ParameterInfoBuilderXML::writeNodes(std::ostringstream& out, const Fx3Parameter& param) {
    const auto port = static_cast<size_t>(mPort);
    ParameterInfoGeneratorXML generator(out, mPort, mParameters);
    switch (param.data.type) {
        case TYPE_INT: {
            const Fx3INTData& data = *param.data.intData;
            generator.infoGenerate(param, widened(data.defaultValue[port]), widened(data.from[port]),
                                   widened(data.to[port]), widened(data.step[port]));
            return true;
        }
        case TYPE_DOUBLE: {
            const Fx3DOUBLEData& data = *param.data.doubleData;
            generator.infoGenerate(param, data.defaultValue[port], data.from[port], data.to[port], data.step[port]);
            return true;
        }
        case TYPE_STRING: {
            const Fx3STRINGData& data = *param.data.stringData;
            generator.infoGenerate(param, data.defaultString[port], data.extension[port].value_or(""));
            return true;
        }
        case TYPE_ENUM: {
            const Fx3ENUMData& data = *param.data.enumData;
            generator.infoGenerate(param, data.defaultValue[port], entriesOf(data, port));
            return true;
        }
        default:
            return false;
    }
}

void ParameterInfoBuilderXML::addFeatureToCategory(const std::string& category, const std::string& feature) {
    const std::string name = xmlNameFilter(category);
    Category* target = mRootCategory.get();
    if (!category.empty()) {
        target = mRootCategory->getChild(name);
        if (target == nullptr) target = new Category(name, mRootCategory.get());  // the root's
    }
    target->addFeature(xmlNameFilter(feature));
}

void ParameterInfoBuilderXML::buildCategories(std::ostringstream& out) {
    out << "<Category Name='" << kRootName << "' NameSpace='Standard'>\n"
        << "<pFeature>AppletParameters</pFeature>\n"
        << "</Category>\n";
    writeCategory(out, mRootCategory.get());
}

/// Writes a category and after it, not within, those below it.
void ParameterInfoBuilderXML::writeCategory(std::ostringstream& out, Category* category) {
    const std::string& name = category->getName();
    out << "<Category Name='" << (name == kRootName ? "AppletParameters" : name) << "'>\n";
    for (unsigned i = 0; i < category->getChildCount(); ++i) {
        out << "<pFeature>" << category->getChild(i)->getName() << "</pFeature>\n";
    }
    for (unsigned i = 0; i < category->getFeatureCount(); ++i) {
        out << "<pFeature>" << category->getFeature(i) << "</pFeature>\n";
    }
    out << "</Category>\n";
    for (unsigned i = 0; i < category->getChildCount(); ++i) writeCategory(out, category->getChild(i));
}

void ParameterInfoBuilderXML::stopAppletDescription(std::ostringstream& out) {
    out << "<Port Name=\"DevicePort\"></Port>\n"
        << "</RegisterDescription>\n";
}
