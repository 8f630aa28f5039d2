"""What the plug-in may call of Windows, and why. A function that is not here needs a reason, one that is no longer
imported is taken out. By library, then by reason."""

ALLOWED = {
    "kernel32.dll": {
        "finds the running core application": """
            K32EnumProcesses CreateToolhelp32Snapshot Process32First Process32Next OpenProcess CloseHandle
            K32EnumProcessModules K32GetModuleBaseNameA K32GetModuleFileNameExA""",
        "loads the PluginCore and the messaging library": """
            LoadLibraryA LoadLibraryW FreeLibrary GetProcAddress FindFirstFileW GetLastError""",
        "knows its own file and the host's": "GetModuleHandleExW GetModuleFileNameW",
        "reads when a document was written": "CreateFileW GetFileTime",
        "checks the heap": "GetProcessHeap HeapValidate",
        "converts text": "MultiByteToWideChar",
        "reads the time, and makes the value of the stack guard": """
            GetSystemTimeAsFileTime QueryPerformanceCounter GetCurrentProcessId GetCurrentThreadId""",
        "stops exceptions of another compiler": "__C_specific_handler",
        "C++ runtime: throwing and catching": """
            RaiseException RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind""",
        "C++ runtime: locks and variables of a thread": """
            CreateSemaphoreW ReleaseSemaphore WaitForSingleObject InitializeCriticalSection EnterCriticalSection
            LeaveCriticalSection DeleteCriticalSection TlsAlloc TlsFree TlsGetValue TlsSetValue Sleep SetLastError""",
        "keeps the variables of a thread": "HeapAlloc HeapFree",
        "C runtime: relocates itself while it is loaded": "VirtualProtect VirtualQuery GetModuleHandleW",
    },
    "msvcrt.dll": {
        "formats log lines": "_vsnprintf_s _snprintf_s",
        "finds files and compares their names": "_stat64 _stricmp",
        "reads the launch-info and the word file": "fopen _wfopen fread ferror fclose",
        "checks the heap": "_heapchk",
        "makes narrow text wide": "mbstowcs_s",
        "memory": "malloc calloc realloc free memchr memcmp memcpy memmove memset",
        "texts": "strcmp strncmp strlen wcslen",
        "C runtime: says what is wrong with its tables": "__iob_func vfprintf fwrite",
        "C++ runtime: its random numbers, which nobody asks for": "_read _close _errno",
        "C++ runtime: the end when nothing else is left": "abort _amsg_exit",
        "C runtime: starts and ends the module": "_initterm _lock _unlock",
    },
    "shell32.dll": {"finds the folders of application data": "SHGetSpecialFolderPathW"},
    "user32.dll": {
        "tells the user that the PluginCore is missing or too old": "MessageBoxA MessageBoxW",
        "answers the host's dialogs about missing fonts": """
            SetWindowsHookExW UnhookWindowsHookEx CallNextHookEx GetDlgItem PostMessageW""",
        "gives the foreground back to the host": """
            GetForegroundWindow SetForegroundWindow GetDesktopWindow GetParent""",
        "finds windows by their titles": "EnumWindows EnumChildWindows GetWindowTextLengthA GetWindowTextA",
    },
    "version.dll": {
        "reads version resources": """
            GetFileVersionInfoA GetFileVersionInfoSizeA GetFileVersionInfoW GetFileVersionInfoSizeW VerQueryValueW""",
    },
}

# What the diagnostic plug-in needs besides.
OF_THE_DIAGNOSTIC_LOG = {
    "kernel32.dll": {
        "makes the folder of the logs, writes the file and deletes old ones": """
            GetEnvironmentVariableW GetTempPathW CreateDirectoryW WriteFile SetFilePointerEx SetEndOfFile FindNextFileW
            FindClose CompareFileTime DeleteFileW""",
        "tells the debugger": "OutputDebugStringW",
        "converts text": "WideCharToMultiByte",
        "tells time and durations": """
            FileTimeToSystemTime SystemTimeToFileTime SystemTimeToTzSpecificLocalTime QueryPerformanceFrequency""",
        "reads the versions of loaded modules": "FindResourceW LoadResource LockResource SizeofResource",
        "lines of other threads": "AcquireSRWLockExclusive TryAcquireSRWLockExclusive ReleaseSRWLockExclusive",
        "knows where an operation was entered": "RtlCaptureStackBackTrace",
    },
    "msvcrt.dll": {
        "names of files": "_snwprintf_s wcscmp",
    },
}


def allowed_imports(is_diagnostic):
    """The functions by library."""
    allowed = {library: " ".join(groups.values()).split() for library, groups in ALLOWED.items()}
    if is_diagnostic:
        for library, groups in OF_THE_DIAGNOSTIC_LOG.items():
            allowed[library] += " ".join(groups.values()).split()
    return {library: set(functions) for library, functions in allowed.items()}
