"""Waiting for what is expected to happen."""
import time

PATIENCE = 60  # in seconds


class Unexpected(Exception):
    """Thrown when an expectation of a scenario is not met."""


def wait_until(holds, complaint, timeout=PATIENCE, pause=0.3):
    """Asks again and again until the answer is true, and returns it. The complaint may be a function that words it."""
    end = time.monotonic() + timeout
    while not (answer := holds()):
        if time.monotonic() > end:
            raise Unexpected(complaint() if callable(complaint) else complaint)
        time.sleep(pause)
    return answer
