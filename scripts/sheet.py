"""Tables of pictures: labelled rows and columns on one dark sheet."""
from PIL import Image, ImageDraw, ImageFont

GAP, TOP, DARK, LIGHT = 4, 20, (24, 24, 24), (230, 230, 230)


def table(cells, rows, columns, label_width, row_label=str, column_label=str):
    """One picture of {(row, column): picture}: a row is as high and a column as wide as its largest cell. A label may
    have several lines."""
    font = ImageFont.load_default()
    heights = [max(cells[row, column].height for column in columns) for row in rows]
    widths = [max(cells[row, column].width for row in rows) for column in columns]
    sheet = Image.new("RGB", (label_width + sum(widths) + GAP * len(columns), TOP + sum(heights) + GAP * len(rows)), DARK)
    pen = ImageDraw.Draw(sheet)
    top = TOP
    for row, height in zip(rows, heights):
        left = label_width
        for column, width in zip(columns, widths):
            if row == rows[0]:
                pen.text((left + 4, 4), column_label(column), fill=LIGHT, font=font)
            sheet.paste(cells[row, column], (left, top))
            left += width + GAP
        pen.multiline_text((6, top + height // 2 - 12), row_label(row), fill=LIGHT, font=font, spacing=5)
        top += height + GAP
    return sheet
