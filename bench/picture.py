"""A picture of some rows as SVG: a panel per measure, in it a group of bars per case, with medians and quartiles."""
from xml.sax.saxutils import escape

import runner
from report import number

SHOWN = {1: ["p50_us"], 3: ["calls_per_s"], 7: ["encode_gb_s", "encode_fresh_gb_s", "decode_gb_s"], 10: ["mb_s"],
         11: ["files_per_s"]}
NAMES = {"project": "project", "plain": "plain", "tirpc": "libtirpc", "grpc": "gRPC"}
COLOURS = {"project": "#1f6fb4", "plain": "#4a4a4a", "tirpc": "#c8791b", "grpc": "#3b8f4f"}
WIDTH, LABELS, VALUES = 860, 270, 90   # of the picture; left of the bars; right of them
BAR, GAP, PANEL = 14, 8, 34            # heights: of a bar, between groups, above a panel


class Drawing:
    def __init__(self):
        self.parts, self.y = [], 10

    def text(self, x, y, text, anchor="start", weight="normal", size=12):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-weight="{weight}" '
                          f'font-size="{size}">{escape(text)}</text>')

    def bar(self, x, y, width, height, colour):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{width:.1f}" height="{height}" fill="{colour}"/>')

    def line(self, x1, x2, y):
        self.parts.append(f'<line x1="{x1:.1f}" x2="{x2:.1f}" y1="{y:.1f}" y2="{y:.1f}" stroke="#000"/>')

    def legend(self, names):
        x = LABELS
        for name in names:
            self.bar(x, self.y, BAR - 2, BAR - 2, COLOURS[name])
            self.text(x + BAR + 2, self.y + BAR - 4, NAMES[name])
            x += 40 + 7 * len(NAMES[name])
        self.y += 2 * BAR

    def panel(self, title, groups):
        """`groups`: pairs of a label and a dictionary of median and quartiles by contestant."""
        self.y += PANEL
        self.text(10, self.y - 12, title, weight="bold", size=13)
        longest = max(high for _, bars in groups for _, _, high in bars.values())
        scale = (WIDTH - LABELS - VALUES) / longest
        for label, bars in groups:
            self.text(LABELS - 10, self.y + BAR * len(bars) / 2 + 4, label, anchor="end")
            for name, (middle, low, high) in bars.items():
                self.bar(LABELS, self.y, middle * scale, BAR - 2, COLOURS[name])
                self.line(LABELS + low * scale, LABELS + high * scale, self.y + BAR / 2 - 1)
                self.text(LABELS + max(middle, high) * scale + 6, self.y + BAR - 4, number(middle), size=11)
                self.y += BAR
            self.y += GAP

    def whole(self):
        inside = "\n".join(self.parts)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{self.y + 10}" '
                f'viewBox="0 0 {WIDTH} {self.y + 10}" font-family="sans-serif">\n'
                f'<rect width="100%" height="100%" fill="#fff"/>\n{inside}\n</svg>\n')


def bars(rounds, name):
    """By contestant, of those in the legend."""
    return {contestant: runner.spread([each[name] for each in rounds[contestant]])
            for contestant in NAMES if contestant in rounds}


def groups(cases, measures):
    """A group per case; of a row with one case, one per measure."""
    for case, rounds in cases:
        for measure in measures:
            yield case.text or measure.text, bars(rounds, measure.name)


def draw(results):
    shown = [(row, cases) for row, cases in results if row.number in SHOWN and cases]
    there = {name for _, cases in shown for _, rounds in cases for name in rounds}
    drawing = Drawing()
    drawing.legend([name for name in NAMES if name in there])
    for row, cases in shown:
        measures = [measure for measure in row.measures if measure.name in SHOWN[row.number]]
        better = "longer is better" if measures[0].more else "shorter is better"
        said = measures[0].unit if len(measures) > 1 else f"{measures[0].text}, {measures[0].unit}"
        drawing.panel(f"{row.number}. {row.title} – {said} ({better})", list(groups(cases, measures)))
    return drawing.whole()
