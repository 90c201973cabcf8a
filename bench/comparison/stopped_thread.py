"""Holds one thread of another process still, as a disk does that doesn't answer, while all others go on.

Signals stop whole processes. A debugger can stop single threads (PTRACE_SEIZE and PTRACE_INTERRUPT, ptrace(2)); this one does
nothing else. The kernel keeps which thread traces, so everything happens on the caller's.
"""
import contextlib
import ctypes
import os

_PTRACE_DETACH = 17
_PTRACE_SEIZE = 0x4206
_PTRACE_INTERRUPT = 0x4207
_WALL = 0x40000000  # waits for threads, too

_libc = ctypes.CDLL(None, use_errno=True)
_libc.ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]
_libc.ptrace.restype = ctypes.c_long


@contextlib.contextmanager
def stopped(thread):
    """The thread stands still within the block. A process's main thread has the number of the process."""
    _ptrace(_PTRACE_SEIZE, thread)
    try:
        _ptrace(_PTRACE_INTERRUPT, thread)
        os.waitpid(thread, _WALL)
        yield
    finally:
        _ptrace(_PTRACE_DETACH, thread)


def _ptrace(request, thread):
    if _libc.ptrace(request, thread, None, None) != 0:
        number = ctypes.get_errno()
        raise OSError(number, f"ptrace {request:#x} of {thread}: {os.strerror(number)}")
