// The property keys and interface classes that other files only declare.
#include <windows.h>

// The headers after <initguid.h> define what they otherwise declare, so it stands right before the
// ones that are meant, and in this file only.
#include <initguid.h>
#include <devpkey.h>
#include <hidclass.h>
#include <usbiodef.h>
