"""One measured figure, its target and its peer."""

import statistics
from dataclasses import asdict, dataclass


@dataclass
class Figure:
    """`better` is "lower" or "higher"; a peer of 0 means that there is none."""

    name: str
    value: float
    unit: str
    target: float
    better: str = "lower"
    peer: str = ""
    peer_value: float = 0.0
    note: str = ""

    def against(self, peer, value):
        self.peer, self.peer_value = peer, value
        return self

    @property
    def met(self):
        return self.value <= self.target if self.better == "lower" else self.value >= self.target

    @property
    def ratio(self):
        """How many times better than the peer; 0 without one."""
        if not self.peer_value or not self.value:
            return 0.0
        return self.peer_value / self.value if self.better == "lower" else self.value / self.peer_value

    def as_json(self):
        return asdict(self) | {"met": self.met, "ratio": round(self.ratio, 2)}

    def as_row(self):
        sign = "≤" if self.better == "lower" else "≥"
        peer = f"{self.peer} {show(self.peer_value)} {self.unit}" if self.peer_value else "—"
        ratio = f"{self.ratio:.1f}×" if self.ratio else "—"
        mark = "" if self.met else " ✗"
        return [self.name, f"{show(self.value)} {self.unit}{mark}", f"{sign} {show(self.target)} {self.unit}", peer, ratio]


def show(value):
    return f"{value:,.0f}".replace(",", " ") if value >= 100 or value == int(value) else f"{value:.1f}"


def median(values):
    return statistics.median(values)


def p95(values):
    return sorted(values)[min(len(values) - 1, int(0.95 * len(values)))]
