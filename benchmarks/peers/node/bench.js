// The jobs of peers_bench with the peers that run in Node, on the same inputs.
//
//   node bench.js INPUTS.json RESULTS.json REPETITIONS SECONDS_PER_REPETITION
//
// Writes one row per job, input and peer with the seconds that one run of the job took, one value per repetition.

import {readFileSync, writeFileSync} from 'node:fs';
import {along} from '@turf/along';
import {bboxClip} from '@turf/bbox-clip';
import {booleanPointInPolygon} from '@turf/boolean-point-in-polygon';
import {distance} from '@turf/distance';
import {lineString, point, polygon} from '@turf/helpers';
import {length} from '@turf/length';
import {lineOffset} from '@turf/line-offset';
import {nearestPointOnLine} from '@turf/nearest-point-on-line';
import CheapRuler from 'cheap-ruler';

// How far results may lie from the expected ones: a sphere; a plane scaled for one latitude; the rest by kind.
const SPHERE = 0.006;
const PLANE = 0.02;

const METRES = {units: 'meters'};

/** A ruler for the middle of the line, in metres. */
function rulerFor(line) {
  return new CheapRuler(line[line.length >> 1][1], 'meters');
}

function pairsOf(points) {
  const pairs = [];
  for (let i = 0; i < points.length; i += 2) pairs.push([points[i], points[i + 1]]);
  return pairs;
}

function sumOver(values, value) {
  let sum = 0;
  for (const v of values) sum += value(v);
  return sum;
}

/** The sum of the distances as work, and each of them beside it. */
function distances(pairs, metres) {
  return Object.assign(() => sumOver(pairs, metres), {each: () => pairs.map(metres)});
}

/** Points every `interval` metres by a function that gives the point at a distance. */
function sample(lineLength, interval, at) {
  const points = [];
  for (let metres = 0; metres <= lineLength; metres += interval) points.push(at(metres));
  return points.length;
}

/**
 * By kind of job the peers: name, tolerance, and a function that prepares the data and gives the work; the work gives
 * the number to check, or an object that `check` turns into one.
 */
const PEERS = {
  distance: [
    {
      peer: 'turf', tolerance: SPHERE, prepare({points}) {
        return distances(pairsOf(points.map((p) => point(p))), ([a, b]) => distance(a, b, METRES));
      },
    },
    {
      // A ruler stands for one latitude: one per pair is prepared. Only meant for short distances.
      peer: 'cheap-ruler', tolerance: PLANE, applies: ({input}) => input.startsWith('near:'), prepare({points}) {
        const pairs = pairsOf(points).map(([a, b]) => [new CheapRuler((a[1] + b[1]) / 2, 'meters'), a, b]);
        return distances(pairs, ([ruler, a, b]) => ruler.distance(a, b));
      },
    },
  ],
  length: [
    {
      peer: 'turf', tolerance: SPHERE, prepare({line}) {
        const prepared = lineString(line);
        return () => length(prepared, METRES);
      },
    },
    {
      peer: 'cheap-ruler', tolerance: PLANE, applies: ({input}) => !input.includes('degrees'), prepare({line}) {
        const ruler = rulerFor(line);
        return () => ruler.lineDistance(line);
      },
    },
  ],
  sampling: [
    {
      peer: 'turf', tolerance: PLANE, prepare({line, interval}) {
        const prepared = lineString(line);
        return () => sample(length(prepared, METRES), interval, (metres) => along(prepared, metres, METRES));
      },
    },
    {
      peer: 'cheap-ruler', tolerance: PLANE, prepare({line, interval}) {
        const ruler = rulerFor(line);
        return () => sample(ruler.lineDistance(line), interval, (metres) => ruler.along(line, metres));
      },
    },
  ],
  clipping: [
    {
      peer: 'turf', tolerance: 0.5, prepare({line, view}) {
        const prepared = lineString(line);
        return () => bboxClip(prepared, view);
      },
      check(clipped) {
        const {type, coordinates} = clipped.geometry;
        return type === 'LineString' ? (coordinates.length > 0 ? 1 : 0) : coordinates.length;
      },
    },
  ],
  containment: [
    {
      peer: 'turf', tolerance: 0.03, prepare({line, points}) {
        const prepared = polygon([[...line, line[0]]]);
        const preparedPoints = points.map((p) => point(p));
        return () => sumOver(preparedPoints, (p) => (booleanPointInPolygon(p, prepared) ? 1 : 0));
      },
    },
  ],
  projection: [
    {
      peer: 'turf', tolerance: PLANE, prepare({line, points}) {
        const prepared = lineString(line);
        const preparedPoints = points.map((p) => point(p));
        return () => sumOver(preparedPoints, (p) => nearestPointOnLine(prepared, p, METRES).properties.dist);
      },
    },
    {
      // The ruler also gives the distance: it is summed to be checked, a small part of the cost.
      peer: 'cheap-ruler', tolerance: PLANE, prepare({line, points}) {
        const ruler = rulerFor(line);
        return () => sumOver(points, (p) => ruler.distance(p, ruler.pointOnLine(line, p).point));
      },
    },
  ],
  offset: [
    {
      // Its offset is in degrees of the plane, as many to the east as to the north: the length says little.
      peer: 'turf', tolerance: 0.1, prepare({line, metres}) {
        const prepared = lineString(line);
        return () => lineOffset(prepared, -metres, METRES);
      },
      check: (line) => length(line, METRES),
    },
  ],
};

/** Seconds that one run of `work` takes, on average over some `seconds`. */
function measure(work, seconds) {
  let runs = 1;
  for (;;) {
    const start = process.hrtime.bigint();
    for (let i = 0; i < runs; ++i) sink = work();
    const elapsed = Number(process.hrtime.bigint() - start) / 1e9;
    if (elapsed >= seconds) return elapsed / runs;
    runs = Math.ceil(runs * Math.min(10, (1.2 * seconds) / Math.max(elapsed, 1e-9)));
  }
}

let sink;  // keeps the work from being left out
const [inputsFile, resultsFile, repetitionText, secondsText] = process.argv.slice(2);
const seconds = Number(secondsText);
const rows = [];
for (const jobCase of JSON.parse(readFileSync(inputsFile))) {
  for (const {peer, tolerance, prepare, check, applies} of PEERS[jobCase.kind]) {
    if (applies && !applies(jobCase)) continue;
    const work = prepare(jobCase);
    const value = check ? check(work()) : work();
    const {job, input, size, items, unit, expected} = jobCase;
    const difference = value === expected ? 0 : Math.abs(value - expected) / Math.abs(expected);
    if (!(difference <= tolerance)) {
      console.error(`${job}, ${input}: ${peer} gives ${value}, expected ${expected}`);
      process.exit(1);
    }
    const largest_error =
      work.each && jobCase.exact.length > 0
        ? Math.max(...work.each().map((metres, i) => Math.abs(metres - jobCase.exact[i])))
        : undefined;
    measure(work, seconds);  // warms up: the compiler at run time has its say
    rows.push({job, input, candidate: peer, size, items, unit, difference, largest_error, seconds: []});
    for (let i = 0; i < Number(repetitionText); ++i) rows.at(-1).seconds.push(measure(work, seconds));
  }
}
writeFileSync(resultsFile, JSON.stringify(rows));
