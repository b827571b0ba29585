#include "StandardApplets/grabber_basis/ParameterInfoGeneratorXML.h"

#include <array>
#include <charconv>
#include <concepts>

#include "StandardApplets/grabber_basis/Fx3Parameter.h"
#include "StandardApplets/grabber_basis/XmlFilters.h"
#include "fabrix/parameter_ids.h"

namespace {

constexpr int kTextLength = 4096;
constexpr size_t kUsualPart = 1000;  // bytes put together between two flushes; more of them grow
constexpr int kLimitDigits = 16;     // of a floating-point field

void append(std::string& text, std::string_view part) { text += part; }

/// \param literal its length is known without counting
template <size_t size>
void append(std::string& text, const char (&literal)[size]) {
    text.append(literal, size - 1);
}

void append(std::string& text, char character) { text += character; }

void append(std::string& text, std::integral auto number) {
    std::array<char, 24> digits;
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void append(std::string& text, double number) {
    std::array<char, 32> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::general, kLimitDigits);
    text.append(digits.data(), end.ptr);
}

/// \return the address whose read gives what \p selector asks for
uint32_t addressOf(const Fx3Parameter& param, uint32_t selector) {
    return static_cast<uint32_t>(param.description.id) + selector;
}

/// \return the address as value and maximum registers print it
int32_t signedAddressOf(const Fx3Parameter& param, uint32_t selector) {
    return static_cast<int32_t>(addressOf(param, selector));
}

}  // namespace

struct ParameterInfoGeneratorXML::RegisterFormat {
    std::string_view element;
    int length;
    std::string_view sign;  // empty: the element knows no sign
};
constexpr ParameterInfoGeneratorXML::RegisterFormat ParameterInfoGeneratorXML::kIntegerRegister{"IntReg", 4, "Signed"};
constexpr ParameterInfoGeneratorXML::RegisterFormat ParameterInfoGeneratorXML::kEntryRegister{"IntReg", 4, "Unsigned"};
constexpr ParameterInfoGeneratorXML::RegisterFormat ParameterInfoGeneratorXML::kDoubleRegister{"FloatReg", 8, ""};

ParameterInfoGeneratorXML::ParameterInfoGeneratorXML(std::ostringstream& out, int port,
                                                     std::set<std::string>& exportedNames)
    : mStr(out), mPort(port), mParameters(exportedNames) {
    mText.reserve(kUsualPart);
}

// ---- Groups, one kind of value each

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, uint64_t /*value*/, uint64_t /*min*/,
                                             uint64_t /*max*/, uint64_t inc) {
    numberRegisters(param, kIntegerRegister);
    infoGenerateAccess(param);
    openFeature(param, "Integer", '\'');
    valueAndLimitReferences(param);
    line("<Inc>", inc, "</Inc>");
    close("Integer");
    flush();
}

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, double /*value*/, double /*min*/,
                                             double /*max*/, double /*inc*/) {
    numberRegisters(param, kDoubleRegister);
    infoGenerateAccess(param);
    openFeature(param, "Float", '"');
    valueAndLimitReferences(param);
    close("Float");
    flush();
}

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, std::string /*value*/,
                                             std::string /*extension*/) {
    infoGenerateAccess(param);
    openFeature(param, "StringReg", '"');  // the register itself is the feature
    infoGenerate(param, kTextLength);
    close("StringReg");
    flush();
}

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, int /*value*/,
                                             const std::map<int, std::string>& entries) {
    infoGenerateAccess(param);
    openFeature(param, "Enumeration", '\'');
    for (const auto& [value, name] : entries) {
        line("<EnumEntry Name=\"", xmlStringFilter(name), "\">");
        line("<Value>", value, "</Value>");
        line("</EnumEntry>");
    }
    line("<pValue>", nameOf(param), "_Reg</pValue>");
    line("</Enumeration>");
    line();
    valueRegister(param, kEntryRegister);
    flush();
}

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, std::vector<uint64_t> values, uint64_t min,
                                             uint64_t max, uint64_t inc) {
    selector(param, values.size());
    valueRegister(param, kIntegerRegister);
    line();
    infoGenerateAccess(param);
    openFeature(param, "Integer", '\'');
    line("<pValue>", nameOf(param), "_Reg</pValue>");
    line("<Min>", min, "</Min>");
    line("<Max>", max, "</Max>");
    line("<Inc>", inc, "</Inc>");
    close("Integer");
    flush();
}

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, std::vector<double> values, double min,
                                             double max, double /*inc*/) {
    selector(param, values.size());
    valueRegister(param, kDoubleRegister);
    line();
    infoGenerateAccess(param);
    openFeature(param, "Float", '"');
    line("<pValue>", nameOf(param), "_Reg</pValue>");
    line("<Min>", min, "</Min>");
    line("<Max>", max, "</Max>");
    close("Float");
    flush();
}

// ---- Bodies of registers

void ParameterInfoGeneratorXML::infoGenerate(const Fx3Parameter& param, int length) {
    const bool isReadable = (param.access.accessFlag[static_cast<size_t>(mPort)] & kReadable) != 0;
    line("<Address>", signedAddressOf(param, 0), "</Address>");
    line("<Length>", length, "</Length>");
    // Whether it can be written changes at run time: the lock tells.
    line("<AccessMode>", isReadable ? "RW" : "WO",
         "</AccessMode>\n"
         "<pPort>DevicePort</pPort>");
    flush();
}

void ParameterInfoGeneratorXML::infoGenerateMin(const Fx3Parameter& param, int length) {
    readOnlyBody(addressOf(param, FG_SELECT_MINIMUM), length);
    flush();
}

void ParameterInfoGeneratorXML::infoGenerateMax(const Fx3Parameter& param, int length) {
    readOnlyBody(signedAddressOf(param, FG_SELECT_MAXIMUM), length);
    flush();
}

void ParameterInfoGeneratorXML::infoGenerateAccess(const Fx3Parameter& param) {
    const std::string_view name = nameOf(param);
    line("<IntSwissKnife Name=\"", name, "_AccessSwissKnife\">");
    line("<pVariable Name=\"ACCESSMODE\">", name, "_RegAccess</pVariable>");
    // Below 2 no bit for writing is set: locked.
    line(
        "<Formula>(ACCESSMODE &lt; 2) ? 1 : 0</Formula>\n"
        "</IntSwissKnife>");
    openRegister(param, kIntegerRegister, "_RegAccess");
    readOnlyBody(addressOf(param, FG_SELECT_ACCESS), kIntegerRegister.length);
    closeRegister(kIntegerRegister);
    line();
    flush();
}

// ---- Parts of the groups

std::string_view ParameterInfoGeneratorXML::nameOf(const Fx3Parameter& param) {
    if (mNamed != &param) mName = xmlStringFilter(param.description.defineName);
    mNamed = &param;
    return mName;
}

template <class... Parts>
void ParameterInfoGeneratorXML::line(const Parts&... parts) {
    (append(mText, parts), ...);
    mText += '\n';
}

/// Ends an element; the next one may follow on the same line.
void ParameterInfoGeneratorXML::close(std::string_view element) {
    append(mText, "</");
    append(mText, element);
    append(mText, '>');
}

/// Hands over what has been put together.
void ParameterInfoGeneratorXML::flush() {
    mStr.write(mText.data(), static_cast<std::streamsize>(mText.size()));
    mText.clear();
}

void ParameterInfoGeneratorXML::openRegister(const Fx3Parameter& param, const RegisterFormat& format,
                                             std::string_view suffix) {
    line('<', format.element, " Name=\"", nameOf(param), suffix, "\">");
}

void ParameterInfoGeneratorXML::closeRegister(const RegisterFormat& format) {
    if (!format.sign.empty()) line("<Sign>", format.sign, "</Sign>");
    line("<Endianess>LittleEndian</Endianess>");
    close(format.element);
}

void ParameterInfoGeneratorXML::valueRegister(const Fx3Parameter& param, const RegisterFormat& format) {
    openRegister(param, format, "_Reg");
    infoGenerate(param, format.length);
    closeRegister(format);
}

/// Writes the registers of value, minimum and maximum.
void ParameterInfoGeneratorXML::numberRegisters(const Fx3Parameter& param, const RegisterFormat& format) {
    valueRegister(param, format);
    line();
    openRegister(param, format, "_RegMin");
    infoGenerateMin(param, format.length);
    closeRegister(format);
    line();
    openRegister(param, format, "_RegMax");
    infoGenerateMax(param, format.length);
    closeRegister(format);
    line();
}

template <class Address>
void ParameterInfoGeneratorXML::readOnlyBody(Address address, int length) {
    line("<Address>", address, "</Address>");
    line("<Length>", length, "</Length>");
    line(
        "<AccessMode>RO</AccessMode>\n"
        "<pPort>DevicePort</pPort>\n"
        "<Cachable>NoCache</Cachable>\n"
        "<PollingTime>500</PollingTime>");
}

void ParameterInfoGeneratorXML::openFeature(const Fx3Parameter& param, std::string_view element, char quote) {
    const std::string_view name = nameOf(param);
    const std::string& description = param.description.docDescription;
    line('<', element, " Name=", quote, name, quote, '>');
    if (!description.empty()) line("<Description>", xmlStringFilter(description), "</Description>");
    line("<pIsLocked>", name, "_AccessSwissKnife</pIsLocked>");
}

void ParameterInfoGeneratorXML::valueAndLimitReferences(const Fx3Parameter& param) {
    const std::string_view name = nameOf(param);
    line("<pValue>", name, "_Reg</pValue>");
    line("<pMin>", name, "_RegMin</pMin>");
    line("<pMax>", name, "_RegMax</pMax>");
}

/// Writes the feature that picks the element of a field; the next node follows on the same line.
void ParameterInfoGeneratorXML::selector(const Fx3Parameter& param, size_t elements) {
    const std::string_view name = nameOf(param);
    line("<Integer Name='", name, "_Selector'>");
    line("<Value>0</Value>");
    line("<Min>0</Min>");
    line("<Max>", elements - 1, "</Max>");
    line("<Inc>1</Inc>");
    line("<pSelect>", name, "_Reg</pSelect>");
    close("Integer");
}
