/* Lists serial ports, given by their numbers, in the registry of Wine, as a driver would. The key must be a volatile
   one, which Wine's own tools cannot make. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

int main(int argc, char **argv)
{
    HKEY key;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, NULL, REG_OPTION_VOLATILE,
                        KEY_ALL_ACCESS, NULL, &key, NULL) != ERROR_SUCCESS)
        return 1;
    for (int i = 1; i < argc; ++i) {
        char name[32];
        char port[16];
        snprintf(name, sizeof name, "\\Device\\Line%s", argv[i]);
        snprintf(port, sizeof port, "COM%s", argv[i]);
        if (RegSetValueExA(key, name, 0, REG_SZ, (const BYTE *)port, (DWORD)strlen(port) + 1) != ERROR_SUCCESS)
            return 1;
    }
    return 0;
}
