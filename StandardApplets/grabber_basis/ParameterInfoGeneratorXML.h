#pragma once

#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include "StandardApplets/grabber_basis/ParameterInfoGeneratorBase.h"

/// Writes the GenApi nodes of one parameter: registers for value and limits, a lock that follows the access bits, and
/// the feature that a user sees. Addresses are parameter identifiers with the selector in the top two bits, just as
/// the registry reads them, so a host needs no other table. The spellings `Endianess`, `Cachable` and `pSelect` are
/// part of the format.
///
/// Created by the document builder for one parameter and one port; borrows the builder's stream, whose locale and
/// number format it uses. Values and limits are read through the registers: as literals stand only the increment of
/// an integer, the limits of fields and the entries of an enumeration. A group ends without a line feed, which the
/// builder adds.
class ParameterInfoGeneratorXML : public ParameterInfoGeneratorBase {
public:
    /// \param port 0 or 1 \param exportedNames names of all parameters of the document; not consulted
    ParameterInfoGeneratorXML(std::ostringstream& out, int port, std::set<std::string>& exportedNames);

    void infoGenerate(const Fx3Parameter& param, uint64_t value, uint64_t min, uint64_t max, uint64_t inc) override;
    void infoGenerate(const Fx3Parameter& param, double value, double min, double max, double inc) override;
    void infoGenerate(const Fx3Parameter& param, std::string value, std::string extension) override;
    void infoGenerate(const Fx3Parameter& param, int value, const std::map<int, std::string>& entries) override;
    void infoGenerate(const Fx3Parameter& param, std::vector<uint64_t> values, uint64_t min, uint64_t max,
                      uint64_t inc) override;
    void infoGenerate(const Fx3Parameter& param, std::vector<double> values, double min, double max,
                      double inc) override;

    /// \name Bodies of registers, in whole lines
    /// \p length is the width of the register in bytes.
    /// @{
    void infoGenerate(const Fx3Parameter& param, int length);
    void infoGenerateMin(const Fx3Parameter& param, int length);
    void infoGenerateMax(const Fx3Parameter& param, int length);
    /// @}

    /// Writes the lock and the register of the access bits it is computed from.
    void infoGenerateAccess(const Fx3Parameter& param);

private:
    struct RegisterFormat;
    static const RegisterFormat kIntegerRegister;
    static const RegisterFormat kEntryRegister;
    static const RegisterFormat kDoubleRegister;

    std::string_view nameOf(const Fx3Parameter& param);
    template <class... Parts>
    void line(const Parts&... parts);
    void close(std::string_view element);
    void flush();
    void openRegister(const Fx3Parameter& param, const RegisterFormat& format, std::string_view suffix);
    void closeRegister(const RegisterFormat& format);
    void valueRegister(const Fx3Parameter& param, const RegisterFormat& format);
    void numberRegisters(const Fx3Parameter& param, const RegisterFormat& format);
    template <class Address>
    void readOnlyBody(Address address, int length);
    void openFeature(const Fx3Parameter& param, std::string_view element, char quote);
    void valueAndLimitReferences(const Fx3Parameter& param);
    void selector(const Fx3Parameter& param, size_t elements);

    std::ostringstream& mStr;
    int mPort;
    [[maybe_unused]] std::set<std::string>& mParameters;
    std::string mText;  ///< what has been put together and not yet handed over
    std::string mName;  ///< the name of the parameter mNamed, as it stands in the document
    const Fx3Parameter* mNamed = nullptr;
};
