#pragma once

#include "Core/Types/StrongReference.h"
#include "Core/Types/WeakReference.h"
