-- The input of ardour.sh: a decaying saw on each channel, twice a second. Ardour finds it by name.
ardour {
	["type"] = "dsp", name = "Host Test Source", category = "Utility", license = "MIT",
	author = "ZUM", description = [[Input of the host test]]
}
function dsp_ioconfig () return { { midi_in = 1, midi_out = 1, audio_in = -1, audio_out = 2 } } end
local rate, at = 48000, 0
function dsp_init (r) rate = r end
function dsp_run (ins, outs, frames)
	for c = 1, #outs do
		local samples = outs[c]:array ()
		for i = 1, frames do
			local t = (at + i) % (rate // 2) / rate
			samples[i] = 0.8 * math.exp (-8 * t) * ((55 + 55 * c) * t % 1 - 0.5)
		end
	end
	at = at + frames
end
