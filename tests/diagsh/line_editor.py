"""The line editor of diagsh, as a person at its terminal uses it."""

import os
import termios
import threading
import time

from diagsh_process import OnQuillbank

UP = "\x1b[A"
DOWN = "\x1b[B"
LEFT = "\x1b[D"
CTRL_A = "\x01"
CTRL_C = "\x03"
CTRL_D = "\x04"
CTRL_R = "\x12"
CTRL_V = "\x16"
CTRL_Z = "\x1a"
BELL = "\x07"
CLEARED = "\r\x1b[J"  # the row of the prompt


class Editing(OnQuillbank):
    def type_and_see(self, child, keys, shown):
        """Tab completes only behind the last key, so what is typed next has to wait."""
        child.send(keys)
        child.expect_exact(shown)

    def wait_for(self, what, condition):
        deadline = time.monotonic() + 20
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.001)

    def send_quoted(self, child, key):
        """Sends Ctrl-V, and the key once it no longer would be a signal."""
        child.send(CTRL_V)
        self.wait_for("the key is not quoted",
                      lambda: not termios.tcgetattr(child.child_fd)[3] & termios.ISIG)
        child.send(key)

    def paste(self, child, text):
        """Sends a text that is too long for the terminal to hold while nobody reads."""
        def write():
            left = text.encode()
            while left:
                left = left[os.write(child.child_fd, left):]

        writer = threading.Thread(target=write, daemon=True)
        writer.start()
        self.addCleanup(writer.join, 20)

    def expect_next_prompt(self, child, text, prompt="/> "):
        child.expect_exact(text)
        child.expect_exact(prompt)
