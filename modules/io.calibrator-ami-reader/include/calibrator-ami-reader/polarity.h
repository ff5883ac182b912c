#pragma once

#include <calibration-core/interfaces/Polarity.h>

using kvan::EPolarity;
using enum kvan::EPolarity;
