// Everything of the OLE subset in one include: base types, IUnknown/IDispatch, the automation and
// COM library functions, and the ATL helpers.
#pragma once

#include "platform/ole/wtypes.h"
#include "platform/ole/unknwn.h"
#include "platform/ole/oleauto.h"
#include "platform/ole/combaseapi.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/atlsafe.h"
#include "platform/ole/atlstr.h"
