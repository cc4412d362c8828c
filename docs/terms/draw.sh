#!/usr/bin/env bash
# Draws the pictures of docs/terms.md with the project's own tool.
# Usage: draw.sh [VOREL] [FOLDER]   the program, and where the pictures go (docs/pictures/terms)
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
vorel=${1:-$root/build/release/tools/vorel/vorel}
pictures=${2:-$root/docs/pictures/terms}
cd "$(dirname "$0")"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$pictures"

# draw NAME TITLE SUBTITLE FILE... [options of `vorel draw`]
draw() {
  local name=$1 title=$2 subtitle=$3
  shift 3
  "$vorel" draw "$@" --picture "$pictures/$name.svg" --title "$title" --subtitle "$subtitle"
}
help() { python3 terms.py "$@"; }

help segments route.geojson > "$work/segments.geojson"
draw segment "Line, vertex and segment" "vertex indices count from 0; segment i joins vertex i and vertex i + 1" \
  line=route.geojson segment="$work/segments.geojson" --number-vertices line --label segment=label

help trace fixes.geojson > "$work/trace.geojson"
"$vorel" match route.geojson "$work/trace.geojson" --max 100 --out "$work/matched.geojson" 2> /dev/null
help join fixes.geojson "$work/matched.geojson" > "$work/perpendiculars.geojson"
draw ratio "Ratio" "how far along its segment a place lies: 0 at its first vertex, 1 at its second" \
  line=route.geojson "perpendicular=$work/perpendiculars.geojson" position=fixes.geojson foot="$work/matched.geojson" \
  --number-vertices line --dashed perpendicular --label foot=segment,ratio

"$vorel" measure route.geojson --table --out "$work/table.csv"
help vertices "$work/table.csv" > "$work/vertices.geojson"
draw cumulative "Cumulative table" "metres from the line's first vertex to each vertex, along the line" \
  line=route.geojson vertex="$work/vertices.geojson" --number-vertices line --label vertex=label

"$vorel" along route.geojson --from 1 --offset 30 --length 120 --out "$work/stretch.geojson" 2> /dev/null
draw offset_along "Offset along a line" "a position is a vertex index and metres behind it: here index 1, offset 30 m; then 120 m ahead" \
  line=route.geojson "stretch ahead=$work/stretch.geojson" --number-vertices line --arrows "stretch ahead"

"$vorel" sample route.geojson --every 50 --out "$work/samples.geojson"
draw spacing "Spacing" "one sample every 50 m along the line, across its vertices; its last vertex is none" \
  line=route.geojson sample="$work/samples.geojson" --label sample=metres

"$vorel" symbols bend.geojson --spacing 90 --view=-31.4100,47.2150,-31.3950,47.2250 --out "$work/symbols.geojson"
help north "$work/symbols.geojson" 45 > "$work/north.geojson"
draw heading "Heading" "degrees from north, clockwise, in which the line goes on" \
  line=bend.geojson north="$work/north.geojson" place="$work/symbols.geojson" \
  --dashed north --arrows line --label place=heading

draw turning_angle "Turning angle" "from straight on to the next segment, without a sign: 0 straight on, 180 back" \
  line=turn.geojson "straight on=turn_ahead.geojson" angle=turn_arc.geojson \
  --number-vertices line --arrows line --dashed "straight on" --label angle=label

for side in left right; do
  "$vorel" offset bend.geojson --metres 25 --side $side --out "$work/$side.geojson"
done
draw left_and_right "Left and right" "as seen along the line, in the direction in which its vertices are numbered" \
  line=bend.geojson left="$work/left.geojson" right="$work/right.geojson" \
  --number-vertices line --arrows line --label left=side --label right=side

"$vorel" offset bend.geojson --metres 30 --side left --out "$work/moved.geojson"
draw parallel_offset "Parallel offset" "each segment moves along its own normal; neighbours meet where their lines cross" \
  line=bend.geojson "moved 30 m to the left=$work/moved.geojson" \
  --number-vertices line --number-vertices "moved 30 m to the left"

help trace position.geojson > "$work/one.geojson"
"$vorel" match foot_segment.geojson "$work/one.geojson" --max 200 --out "$work/both.geojson" 2> /dev/null
help first "$work/both.geojson" 1 > "$work/foot.geojson"
help join position.geojson "$work/foot.geojson" > "$work/perpendicular.geojson"
draw foot_point "Foot point" "where the perpendicular from a position meets the segment's line" \
  segment=foot_segment.geojson "perpendicular=$work/perpendicular.geojson" position=position.geojson \
  foot="$work/foot.geojson" --number-vertices segment --dashed perpendicular --label position=label --label foot=ratio

draw position_code "Position code" "before the segment's first vertex, within it, beyond its second" \
  segment=codes_segment.geojson normal=codes_normals.geojson position=codes_positions.geojson \
  --number-vertices segment --arrows segment --dashed normal --label position=label

"$vorel" cut boundary.geojson --from 1:0.4 --length 172 --marks 2,4 --out "$work/piece.geojson"
draw piece "Piece of a boundary and marked vertices" "from segment 1, ratio 0.4, 172 m; vertices 2 and 4 are marked; a mark is an index in the piece" \
  boundary=boundary.geojson piece="$work/piece.geojson" --number-vertices boundary --label piece=mark,vertex

"$vorel" clip winding.geojson --view=-31.4052063,47.2198201,-31.4029575,47.2209893 --out "$work/pieces.geojson"
draw view "View and pieces in view" "whole segments that run through the rectangle; nothing is cut at its border" \
  view=view.geojson line=winding.geojson piece="$work/pieces.geojson" --number-vertices line --label piece=piece

"$vorel" symbols winding.geojson --view=-31.4052063,47.2198201,-31.4029575,47.2209893 --spacing 40 \
  --out "$work/none.geojson" --picture "$pictures/symbol.svg"

"$vorel" arrow lane.geojson --width 6 --line-as centre --out "$work/arrow.geojson"
for part in shaft "left edge" "right edge"; do
  help only "$work/arrow.geojson" part "$part" > "$work/$part.geojson"
done
draw lane_arrow "Guide line, shaft and its edges" "left and right as seen along the guide line, from the arrow's tail to its head" \
  shaft="$work/shaft.geojson" "left edge=$work/left edge.geojson" "right edge=$work/right edge.geojson" \
  "guide line=lane.geojson" --arrows "guide line" --label shaft=part --label "left edge=part" --label "right edge=part"

"$vorel" bounds route.geojson --range 1,3 --out "$work/box.geojson"
draw bounds "Bounding box" "of the vertices 1 to 3, both included" \
  line=route.geojson box="$work/box.geojson" --number-vertices line

"$vorel" thin trace.geojson --spacing 30 --out "$work/thinned.geojson" 2> /dev/null
draw thinning "Thinning" "kept neighbours lie more than 30 m apart; the last vertex is not forced in" \
  line=trace.geojson kept="$work/thinned.geojson" --number-vertices line

"$vorel" contains area.geojson stops.geojson --out "$work/inside.geojson"
draw area "Area" "a polygon closes itself, and its boundary belongs to it" \
  area=area.geojson point="$work/inside.geojson" --label point=inside --label area=label
