"""What is fuzzed: the command of each target and how it gets its input."""
from typing import NamedTuple, Optional

# The source beside a fuzzed module file: it uses what the modules of the corpus have.
MODULE_USER = """program p
  use m
  use m, only: z => x, t, operator(+), g
  type(t) :: y
  real :: w(4, 5) = 1.0
  y = z
  print *, y + w, v(2), g(1), g(1.0), len(c), shape(a), x
  read n
  call s(w, y)
contains
  subroutine q
    use m, r2 => r
    r2 = r2 + v(1)
  end subroutine q
end program p
"""

# The source that the command lines of the corpus name.
COMMAND_LINE_SOURCE = """module m
  integer :: i
end module m
program p
  use m
  include 't.inc'
  i = j
end
"""


class Target(NamedTuple):
    program: str
    arguments: list         # @@ stands for the file with the input; without it the input is standard input
    words: str                # kind of words to build inputs from
    file: Optional[str] = None  # the name that the input must have
    statuses: tuple = (0, 2, 4)

    def command(self, program, path):
        """The shell command that runs one input."""
        if self.file:
            return ["sh", "-c", f'cp "$1" {self.file} && shift && exec "$@"', "sh", path, program, *self.arguments]
        if "@@" in self.arguments:
            return [program, *(path if a == "@@" else a for a in self.arguments)]
        return ["sh", "-c", 'exec "$@" <"$0"', path, program, *self.arguments]


TARGETS = {
    "free": Target("fuzzed_zf90", ["-r", "-o", "t.cil", "-X", "t.xref", "-M", "./", "-"], "fortran"),
    "fixed": Target("fuzzed_zf90", ["-FrD", "-o", "t.cil", "-L", "t.lst", "-M", "./", "-"], "fortran"),
    "module": Target("fuzzed_zf90", ["-o", "t.cil", "-M", "./", "use.f90"], "records", "M.mod"),
    "command": Target("fuzzed_command_line", ["@@"], "options"),
    "il": Target("fuzzed_zf90_il", ["html", "@@"], "records"),
}
