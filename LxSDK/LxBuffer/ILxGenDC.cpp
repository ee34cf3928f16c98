#include "LxBuffer/ILxGenDC.h"

ILxGenDCImage::~ILxGenDCImage() = default;
ILxGenDCPart::~ILxGenDCPart() = default;
ILxGenDCComponent::~ILxGenDCComponent() = default;
ILxGenDCContainer::~ILxGenDCContainer() = default;
