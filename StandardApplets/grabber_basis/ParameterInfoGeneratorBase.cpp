#include "StandardApplets/grabber_basis/ParameterInfoGeneratorBase.h"

ParameterInfoGeneratorBase::~ParameterInfoGeneratorBase() = default;
