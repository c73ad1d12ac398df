#pragma once
#include "zol/core/Messages.h"
