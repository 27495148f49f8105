"""A long series of runs takes no more memory than a short one."""

import json
import unittest

from harness import ToolTest, reader


class Memory(ToolTest):
    RUNS = 10000

    @staticmethod
    def resident(process):
        """What the process occupies now, in KiB."""
        with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))

    def test_memory_stays_flat(self):
        self.furnish(reader("A-1"))
        process = self.start("run", "A-1", "absorbance", "--set", "wavelengths=450", "--format",
                             "json", "--repeat", self.RUNS)
        sizes = []
        for number, line in enumerate(process.stdout, 1):
            if number in (self.RUNS // 10, self.RUNS - 50):
                sizes.append(self.resident(process))
        self.assertEqual(json.loads(line)["format"], "qeldevices-run")
        self.assertEqual((process.wait(), number), (0, self.RUNS))
        # In KiB: 13 bytes a run would show; what the allocator keeps back does not grow.
        self.assertLess(sizes[1] - sizes[0], 128, sizes)


if __name__ == "__main__":
    unittest.main()
