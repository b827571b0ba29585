#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class Fx3Parameter;

/// Describes parameters in some form, one operation for each kind of value. An operation gets the present value and
/// the limits of the parameter; which of them the description holds is up to the form.
///
/// Lives for the description of one parameter, on one thread. Changes nothing in the parameter's record.
class ParameterInfoGeneratorBase {
public:
    ParameterInfoGeneratorBase() = default;
    ParameterInfoGeneratorBase(const ParameterInfoGeneratorBase&) = delete;
    ParameterInfoGeneratorBase& operator=(const ParameterInfoGeneratorBase&) = delete;
    virtual ~ParameterInfoGeneratorBase();

    virtual void infoGenerate(const Fx3Parameter& param, uint64_t value, uint64_t min, uint64_t max, uint64_t inc) = 0;
    virtual void infoGenerate(const Fx3Parameter& param, double value, double min, double max, double inc) = 0;
    /// \param extension file name pattern of a text that names a file
    virtual void infoGenerate(const Fx3Parameter& param, std::string value, std::string extension) = 0;
    /// \param entries symbolic names by value
    virtual void infoGenerate(const Fx3Parameter& param, int value, const std::map<int, std::string>& entries) = 0;
    /// Field: one value for each element.
    virtual void infoGenerate(const Fx3Parameter& param, std::vector<uint64_t> values, uint64_t min, uint64_t max,
                              uint64_t inc) = 0;
    virtual void infoGenerate(const Fx3Parameter& param, std::vector<double> values, double min, double max,
                              double inc) = 0;
};
