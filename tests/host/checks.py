"""What the checks of whole programs share: values that are compared, programs that are started, an end that tells all."""
import subprocess
import sys

faults = []
count = 0


def expect(name, got, wanted):
    global count
    count += 1
    if got != wanted:
        faults.append(f"{name}: {got!r} instead of {wanted!r}")


def windows(path):
    """A path of this system as programs under Wine name it."""
    return "Z:" + str(path).replace("/", "\\")


def start(*line, folder=None, timeout=300):
    """Runs it to its end. Exit code, and what it said on both channels."""
    done = subprocess.run([*map(str, line)], stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout, cwd=folder)
    return done.returncode, (done.stdout + done.stderr).decode(errors="replace").replace("\r", "")


def finish(more=""):
    print("\n".join(faults) or f"{count} checks passed{more}")
    sys.exit(1 if faults else 0)
