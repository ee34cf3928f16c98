#include "LxBuffer/ILxImage.h"

ILxImage::~ILxImage() = default;
